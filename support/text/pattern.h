// A regular expression (PCRE2) and its matches in a text.
//
//     Pattern("a(b)?(c)").Find("xac")    groups 1-3, none, 2-3
//
// Both are bytes, NUL included, never UTF-8. Matching is bounded: one that would take too long finds nothing,
// and a text of any length is safe. "$" also matches before a line end at the end of the text, "." matches no
// line end, and "\d", "\s", "\w" are ASCII only.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

class Pattern {
  public:
    struct Group {
        size_t begin = 0;
        size_t end = 0;
        bool took_part = false;
    };
    using Match = std::vector<Group>;  // [0] is the whole match

    /// The work left, in characters looked at. A loop over the matches of one text shares one, so that the
    /// whole loop is bounded.
    struct Work {
        explicit Work(std::string_view subject);
        size_t left;
    };

    /// Compiles the expression, unless it is in the cache.
    explicit Pattern(std::string_view expression);

    /// False if the expression is malformed or too large to compile; it then matches nothing.
    bool IsValid() const;
    /// The first match at or after from; nullopt if from is beyond the end.
    std::optional<Match> Find(std::string_view subject, size_t from = 0) const;
    std::optional<Match> Find(std::string_view subject, size_t from, Work* work) const;

  private:
    struct Program;
    static std::shared_ptr<const Program> Compiled(std::string_view expression);
    std::shared_ptr<const Program> program_;
};
