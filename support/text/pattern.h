// A compiled regular expression (PCRE2, in the common backtracking syntax), compiled once for each text and
// kept. Matching is bounded: one that would run away counts as no match, and a text of any length is safe.
// The subject is bytes, not UTF-8. "$" also matches before a line end that ends the text, "." matches no line
// end, and "\d", "\s", "\w" are ASCII's.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "support/text/sstring.h"

class Pattern {
  public:
    struct Group {
        size_t begin = 0;
        size_t end = 0;
        bool took_part = false;
    };
    using Match = std::vector<Group>;  // [0] is the whole match

    /// What matching may still cost, in characters looked at. A loop of matches over one text shares one, so
    /// that the loop, too, is bounded.
    struct Work {
        explicit Work(const SString& subject);
        size_t left;
    };

    /// The compiled expression; one that does not compile is kept as one that matches nothing. The reference
    /// stays good while fewer than a hundred other expressions are asked for.
    static const Pattern& Of(const SString& expression);

    bool IsValid() const;
    /// The first match at or after from.
    std::optional<Match> Find(const SString& subject, size_t from = 0) const;
    std::optional<Match> Find(const SString& subject, size_t from, Work* work) const;

    ~Pattern();
    Pattern(const Pattern&) = delete;
    Pattern& operator=(const Pattern&) = delete;

  private:
    explicit Pattern(const SString& expression);
    struct Compiled;
    class Cache;
    std::unique_ptr<Compiled> compiled_;
};
