// A byte string and the text operations that the program is written with.
//
// Any byte may stand in an SString, NUL included. Copies are independent values. Nothing here throws for
// bad input: an expression that does not compile, or that runs away, matches nothing (see pattern.h).
#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

class SStringList;

/// What an SString is made from as a number: a character or a truth value is none.
template <typename T>
concept Number = std::integral<T> && !std::same_as<T, char> && !std::same_as<T, bool>;

class SString {
  public:
    SString() = default;
    SString(const char* text) : bytes_(text == nullptr ? "" : text) {}  // NUL-terminated; null is empty
    SString(std::string bytes) : bytes_(std::move(bytes)) {}
    SString(std::string_view bytes) : bytes_(bytes) {}
    template <Number T>
    SString(T number) : bytes_(std::to_string(number)) {}  // decimal text; a literal 0, too, is a number
    /// The character repeated; empty when count is 0 or less.
    SString(char c, Number auto count) : bytes_(count > 0 ? static_cast<size_t>(count) : 0, c) {}

    SString& operator+=(const SString& other);
    SString& operator+=(std::same_as<char> auto c) {  // or an int would be taken for a character
        bytes_ += c;
        return *this;
    }

    bool operator==(const SString& other) const = default;
    /// By byte value, unsigned. (clang-tidy 14 takes the "<=> 0" that the compiler makes of it for a
    /// pointer's.)
    std::strong_ordering operator<=>(const SString&) const = default;  // NOLINT(modernize-use-nullptr)

    size_t Length() const { return bytes_.size(); }
    bool IsEmpty() const { return bytes_.empty(); }
    /// The character at an index; -1 is the last one. NUL when there is none.
    char operator[](long index) const;
    /// For system calls; ends at the first NUL there.
    const char* CString() const { return bytes_.c_str(); }
    const std::string& Bytes() const { return bytes_; }

    /// Removes the last character, if there is one.
    SString& Chop();
    /// Removes one line end ("\n" or "\r\n"), if the text ends in one.
    SString& ChopLineEnd();
    /// Lower-cases the ASCII letters in place.
    SString& LowerCase();
    /// The position of the first c at or after from; negative when there is none.
    long Index(char c, long from = 0) const;
    bool StartsWith(std::string_view prefix) const { return bytes_.starts_with(prefix); }
    bool EndsWith(std::string_view suffix) const { return bytes_.ends_with(suffix); }

    /// The captured groups of the first match, in order; a group that took no part is an empty string.
    /// Empty when nothing matches, and also when the expression has no groups: Matches tells. The pattern
    /// may stand between slashes.
    SStringList M(const SString& pattern) const;
    bool Matches(const SString& pattern) const;
    /// The text with the first match replaced, $1, $2 ... standing for the groups. Flags "g": every match.
    SString S(const SString& pattern, const SString& replacement, const SString& flags = "") const;

    /// Fields between separators, at most limit of them when limit is above 0 (the last takes the rest). The
    /// blank as separator means runs of white space, and no empty fields. Any other keeps a leading empty
    /// field and inner ones, and drops trailing ones.
    SStringList Split(char separator, int limit = 0) const;
    /// The same at every match of a pattern.
    SStringList Split(const SString& pattern, int limit = 0) const;
    /// The fields between every occurrence of the literal separator, empty ones kept, at most limit of them
    /// when limit is above 0. The empty text has no fields.
    SStringList SplitExact(const SString& separator, int limit = 0) const;

    /// Optional blanks, an optional sign, decimal digits as far as they go. No digits give 0; a number out
    /// of long's range stays at its end, and never wraps.
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
    return SString(left, 1) += right;
}

std::ostream& operator<<(std::ostream& out, const SString& text);
/// One line, its line end kept (Chop removes it; a last line without one gets one, so that Chop loses
/// nothing).
std::istream& operator>>(std::istream& in, SString& text);
