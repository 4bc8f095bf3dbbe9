// A byte string and the text operations that the program is written with.
//
//     SString("a=b c").M("^a=(\\S+)")    {"b"}
//     SString("a, b").Split("[\\s,]+")   {"a", "b"}
//
// Any byte may stand in it, NUL included. Nothing throws for bad input: an expression that is malformed or
// runs away matches nothing (see pattern.h).
#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

class SStringList;

/// A character or a truth value is no number.
template <typename T>
concept Number = std::integral<T> && !std::same_as<T, char> && !std::same_as<T, bool>;

class SString {
  public:
    SString() = default;
    /// Up to the first NUL; empty for a null pointer.
    SString(const char* text) : bytes_(text == nullptr ? "" : text) {}
    SString(std::string bytes) : bytes_(std::move(bytes)) {}
    SString(std::string_view bytes) : bytes_(bytes) {}
    /// In decimal. A literal 0 is a number, too, not a null pointer.
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
    /// The character at an index, -1 being the last one; NUL where there is none.
    char operator[](long index) const;
    /// For system calls; ends at the first NUL there.
    const char* CString() const { return bytes_.c_str(); }
    const std::string& Bytes() const { return bytes_; }

    /// Removes the last character, if there is one.
    SString& Chop();
    /// Removes one line end ("\n" or "\r\n"), if the text ends in one; a lone "\r" is none.
    SString& ChopLineEnd();
    /// Lower-cases the ASCII letters in place.
    SString& LowerCase();
    /// The position of the first c at or after from (below 0: anywhere); negative when there is none.
    long Index(char c, long from = 0) const;
    bool StartsWith(std::string_view prefix) const { return bytes_.starts_with(prefix); }
    bool EndsWith(std::string_view suffix) const { return bytes_.ends_with(suffix); }

    /// The groups of the first match, one that took no part being empty. No elements when nothing matches or
    /// the pattern has no groups: Matches tells which. The pattern may stand between slashes, here and in
    /// Matches only.
    SStringList M(const SString& pattern) const;
    bool Matches(const SString& pattern) const;
    /// A copy with the first match replaced, or with the flag "g" every match. $1 to $99 stand for the
    /// groups, empty where the pattern has no such group; any other "$" is itself.
    SString S(const SString& pattern, const SString& replacement, const SString& flags = "") const;

    /// The fields between separators, without trailing empty ones; at most limit when that is above 0, the
    /// last taking the rest. The blank stands for any run of white space and gives no empty fields at all.
    SStringList Split(char separator, int limit = 0) const;
    /// The same at every match of a pattern. One that matches the empty text splits between characters; a
    /// malformed one gives the whole text.
    SStringList Split(const SString& pattern, int limit = 0) const;
    /// The fields between the literal separators, with all empty ones; limit as in Split. The empty text has
    /// no fields; an empty separator gives the whole text.
    SStringList SplitExact(const SString& separator, int limit = 0) const;

    /// Optional white space, an optional sign, decimal digits as far as they go. No digits give 0; a number
    /// out of long's range gives the end of that range.
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
/// One line with its line end; a last line without one gets one, so that Chop loses nothing. At the end of
/// the stream it fails and gives the empty text.
std::istream& operator>>(std::istream& in, SString& text);
