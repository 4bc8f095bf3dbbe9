// A list of strings, indexed from 0.
//
//     SStringList({"a b", "c"}).Grep("s/ .*//")    {"a"}; the list becomes {"a", "c"}
//
// Push, Pop and Shift take constant time. Arguments may be the list itself or its elements.
#pragma once

#include <deque>
#include <initializer_list>
#include <iosfwd>
#include <vector>

#include "support/text/sstring.h"

class SStringList {
  public:
    using iterator = std::deque<SString>::iterator;
    using const_iterator = std::deque<SString>::const_iterator;

    SStringList() = default;
    /// One element: an SString or anything convertible to one.
    template <std::convertible_to<SString> T>
    SStringList(const T& only) : items_{SString(only)} {}
    SStringList(std::initializer_list<SString> items) : items_(items) {}
    /// Up to the first null pointer; empty for a null array.
    explicit SStringList(const char* const* null_terminated);

    bool operator==(const SStringList& other) const = default;

    size_t Count() const { return items_.size(); }
    bool IsEmpty() const { return items_.empty(); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }
    auto begin() { return items_.begin(); }
    auto end() { return items_.end(); }

    template <std::convertible_to<SString> T>
    void Push(const T& item) {
        items_.emplace_back(item);
    }
    void Push(const SStringList& items);
    /// Removes and returns the last (Pop) or first (Shift) element; an empty string if there is none.
    SString Pop();
    SString Shift();
    /// Inserts before position at (clamped to the list).
    void Insert(const SStringList& items, int at);
    /// Removes up to count elements from position at (clamped to the list); none if count is negative.
    void Splice(int at, int count);
    /// Element i; an empty string out of range.
    SString Get(int i) const;
    /// Element i, which must exist.
    const SString& operator[](size_t i) const { return items_[i]; }
    SString& operator[](size_t i) { return items_[i]; }

    bool Contains(const SString& item) const;
    /// Removes every element equal to the item.
    void Delete(const SString& item);
    /// "/re/" returns the elements that match, "!/re/" those that do not, in order. "s/re/replacement/"
    /// replaces the first match in each element that has one, in place, and returns those elements. "\/" is a
    /// slash inside an expression. A malformed re matches nothing, so "!/re/" returns all elements. Any other
    /// text returns and changes nothing. The second argument is prescribed and ignored.
    SStringList Grep(const SString& expression, SStringList* unused = nullptr);
    SStringList Grep(const SString& expression) const = delete;  // "s/re/x/" edits: copy the list first
    /// The elements with the separator between them.
    SString Join(const SString& separator = "") const;
    void Sort();    // by byte value
    void Unique();  // removes elements equal to the one before
    void Chop();    // the last character of every element
    void Undef() { items_.clear(); }
    void Reset() { items_.clear(); }

    /// For execv: null-terminated, valid while the list lives and is not changed.
    std::vector<char*> Pointers();

  private:
    std::deque<SString> items_;
};

/// Replaces the list by the stream's remaining lines, each as SString's operator reads it.
std::istream& operator>>(std::istream& in, SStringList& lines);

/// A copy with the ASCII letters of every element lower-cased.
SStringList LowerCase(SStringList items);

/// The text's lines, each with its line end, which the last one may lack. No lines for the empty text.
SStringList Lines(const SString& text);
