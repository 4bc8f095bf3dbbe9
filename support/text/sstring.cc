// Implements SString's operations that take no pattern.
#include "support/text/sstring.h"

#include <algorithm>
#include <cstdlib>
#include <istream>
#include <ostream>

SString& SString::operator+=(const SString& other) {
    bytes_ += other.bytes_;
    return *this;
}

char SString::operator[](long index) const {
    const long length = static_cast<long>(bytes_.size());
    if (index == -1) index = length - 1;
    return index >= 0 && index < length ? bytes_[static_cast<size_t>(index)] : '\0';
}

SString& SString::Chop() {
    if (!bytes_.empty()) bytes_.pop_back();
    return *this;
}

SString& SString::ChopLineEnd() {
    if (!bytes_.ends_with('\n')) return *this;
    bytes_.pop_back();
    if (bytes_.ends_with('\r')) bytes_.pop_back();
    return *this;
}

SString& SString::LowerCase() {
    std::transform(bytes_.begin(), bytes_.end(), bytes_.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return *this;
}

long SString::Index(char c, long from) const {
    const size_t found = bytes_.find(c, static_cast<size_t>(std::max(from, 0L)));
    return found == std::string::npos ? -1 : static_cast<long>(found);
}

long SString::ToNumber() const {
    return std::strtol(CString(), nullptr, 10);
}

void SString::Write(std::ostream& out) const {
    out.write(bytes_.data(), static_cast<std::streamsize>(bytes_.size()));
}

SString operator+(SString left, const SString& right) {
    left += right;
    return left;
}

std::ostream& operator<<(std::ostream& out, const SString& text) {
    text.Write(out);
    return out;
}

std::istream& operator>>(std::istream& in, SString& text) {
    std::string line;
    const bool is_read = static_cast<bool>(std::getline(in, line));
    if (is_read) line += '\n';
    text = std::move(line);
    return in;
}
