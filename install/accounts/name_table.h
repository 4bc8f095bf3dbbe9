// A sorted table from names to values, filled once and then searched. The names share one string: an object
// for each would take more memory than the name. A name may have several values, kept in the order of Add.
#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include "support/text/sstring.h"

template <typename Value>
class NameTable {
  public:
    struct Row {
        size_t begin;  // of the name in names_
        size_t length;
        Value value;
    };

    void Add(const SString& name, const Value& value) {
        rows_.push_back({names_.size(), name.Length(), value});
        names_ += name.Bytes();
    }

    /// Call this between the last Add and the first Find.
    void Sort() {
        std::stable_sort(rows_.begin(), rows_.end(),
                         [this](const Row& left, const Row& right) { return Name(left) < Name(right); });
    }

    std::span<const Row> Find(const SString& name) const {
        std::string_view wanted = name.Bytes();
        auto begin = std::lower_bound(rows_.begin(), rows_.end(), wanted,
                                      [this](const Row& row, std::string_view n) { return Name(row) < n; });
        auto end = begin;
        while (end != rows_.end() && Name(*end) == wanted) ++end;
        return {begin, end};
    }

  private:
    std::string_view Name(const Row& row) const {
        return std::string_view(names_).substr(row.begin, row.length);
    }

    std::string names_;
    std::vector<Row> rows_;
};
