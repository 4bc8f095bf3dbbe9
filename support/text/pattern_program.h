// One compiled form of an expression and the bounds under which it runs; private to the pattern module.
#pragma once

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <memory>
#include <optional>

#include "support/text/pattern.h"

class PatternProgram {
  public:
    /// Counted programs charge each step to the work given to Run; the others, for short texts only, rely on
    /// the library's own limit.
    enum class Kind { kShortTexts, kCounted };

    PatternProgram(const SString& expression, Kind kind);
    bool IsValid() const { return code_ != nullptr; }
    std::optional<Pattern::Match> Run(const SString& subject, size_t from, Pattern::Work* work) const;

  private:
    int Execute(const SString& subject, size_t from, Pattern::Work* work) const;
    Pattern::Match Groups(size_t count) const;

    struct FreeCode {
        void operator()(pcre2_code* code) const { pcre2_code_free(code); }
    };
    struct FreeMatchData {
        void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
    };
    Kind kind_;
    std::unique_ptr<pcre2_code, FreeCode> code_;  // none: the expression does not compile
    std::unique_ptr<pcre2_match_data, FreeMatchData> data_;
};
