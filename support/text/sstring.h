// A byte string with the program's text operations.
//
//     SString("a=b c").M("^a=(\\S+)")    {"b"}
//     SString("a, b").Split("[\\s,]+")   {"a", "b"}
//
// It may contain any byte, NUL included. Bad input never throws: an expression that is malformed or takes too
// long matches nothing (see pattern.h).
#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

class SStringList;

/// Excludes characters and bool, which must not turn into digits.
template <typename T>
concept Number = std::integral<T> && !std::same_as<T, char> && !std::same_as<T, bool>;

class SString {
  public:
    SString() = default;
    /// Up to the first NUL; empty for a null pointer.
    SString(const char* text) : bytes_(text == nullptr ? "" : text) {}
    SString(std::string bytes) : bytes_(std::move(bytes)) {}
    SString(std::string_view bytes) : bytes_(bytes) {}
    /// In decimal. A literal 0 is a number, not a null pointer.
    template <Number T>
    SString(T number) : bytes_(std::to_string(number)) {}
    /// The character repeated; empty when the count is 0 or negative.
    SString(char c, Number auto count) : bytes_(count > 0 ? static_cast<size_t>(count) : 0, c) {}

    SString& operator+=(const SString& other);
    /// Takes only a char: text += 65 appends "65".
    SString& operator+=(std::same_as<char> auto c) {
        bytes_ += c;
        return *this;
    }

    bool operator==(const SString& other) const = default;
    /// By unsigned byte value. clang-tidy 14 takes the 0 in the compiler's "<=> 0" for a pointer.
    std::strong_ordering operator<=>(const SString&) const = default;  // NOLINT(modernize-use-nullptr)

    size_t Length() const { return bytes_.size(); }
    bool IsEmpty() const { return bytes_.empty(); }
    /// The character at an index, the last one at -1; NUL out of range.
    char operator[](long index) const;
    /// For system calls, which stop at the first NUL.
    const char* CString() const { return bytes_.c_str(); }
    const std::string& Bytes() const { return bytes_; }

    /// Removes the last character, if there is one.
    SString& Chop();
    /// Removes one line end ("\n" or "\r\n"), if the text ends with one; not a lone "\r".
    SString& ChopLineEnd();
    /// Lower-cases the ASCII letters in place.
    SString& LowerCase();
    /// The position of the first c at or after from (a negative from counts as 0); negative if there is none.
    long Index(char c, long from = 0) const;
    bool StartsWith(std::string_view prefix) const { return bytes_.starts_with(prefix); }
    bool EndsWith(std::string_view suffix) const { return bytes_.ends_with(suffix); }

    /// The groups of the first match, empty for one that took no part. No elements if nothing matches or the
    /// pattern has no groups: Matches tells which. Only M and Matches accept a pattern between slashes.
    SStringList M(const SString& pattern) const;
    bool Matches(const SString& pattern) const;
    /// A copy with the first match replaced, or with the flag "g" every match. $1 to $99 are the groups,
    /// empty if the pattern has no such group; any other "$" is literal.
    SString S(const SString& pattern, const SString& replacement, const SString& flags = "") const;

    /// The fields between separators, without trailing empty ones. If limit is positive, at most that many,
    /// the last one holding the rest. A blank means any run of white space, and gives no empty fields.
    SStringList Split(char separator, int limit = 0) const;
    /// The same at every match of a pattern. One that matches the empty text splits between characters; a
    /// malformed one gives the whole text.
    SStringList Split(const SString& pattern, int limit = 0) const;
    /// The fields between literal separators, empty ones included; limit as in Split. The empty text has no
    /// fields; an empty separator gives the whole text.
    SStringList SplitExact(const SString& separator, int limit = 0) const;

    /// The leading decimal number, after optional white space and sign; 0 without digits. Clamped to the
    /// range of long.
    long ToNumber() const;

    void Write(std::ostream& out) const;

  private:
    std::string bytes_;
};

SString operator+(SString left, const SString& right);
SString operator+(SString left, std::same_as<char> auto right) {
    left += right;
    return left;
}
SString operator+(std::same_as<char> auto left, const SString& right) {
    return SString(left, 1) + right;
}

std::ostream& operator<<(std::ostream& out, const SString& text);
/// One line with its line end; a last line without one gets one, so that Chop always removes just that. At
/// the end of the stream it fails and gives the empty text.
std::istream& operator>>(std::istream& in, SString& text);
