#include "install/record/checksum.h"

#include <array>

#include "support/system/file.h"
#include "support/system/regular_file.h"

namespace {

constexpr size_t kPiece = 1U << 20U;

}  // namespace

SString Checksum(const SString& bytes) {
    return KeyedChecksum("", bytes);
}

SString KeyedChecksum(const SString& key, const SString& bytes) {
    KeyedSum sum(key);
    sum.Add(bytes.Bytes());
    return sum.Digits();
}

KeyedSum::KeyedSum(const SString& key) {
    SHA256Init(&context_);
    Add(key.Bytes());
}

void KeyedSum::Add(std::string_view piece) {
    SHA256Update(&context_, reinterpret_cast<const uint8_t*>(piece.data()), piece.size());
}

SString KeyedSum::Digits() {
    std::array<char, SHA256_DIGEST_STRING_LENGTH> digits{};
    return SString(SHA256End(&context_, digits.data()));
}

SString Checksum(const Descriptor& file) {
    KeyedSum sum("");
    auto piece = file.ReadAll(kPiece);
    for (; piece && !piece->IsEmpty(); piece = file.ReadAll(kPiece)) sum.Add(piece->Bytes());
    return piece ? sum.Digits() : "";
}

SString ChecksumAt(const SString& path) {
    const RegularFile file = OpenRegularFile(path, O_RDONLY, Links::NotAtEnd);
    if (file) return Checksum(file.descriptor);
    const SString text = LinkText(path);
    return text.IsEmpty() ? text : Checksum(text);
}

SString Hexadecimal(const SString& bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string digits;
    for (const char c : bytes.Bytes()) {
        const auto byte = static_cast<unsigned char>(c);
        digits += kDigits[byte / 16];
        digits += kDigits[byte % 16];
    }
    return SString(std::move(digits));
}
