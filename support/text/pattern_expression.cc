// Parses pattern expressions.
#include "support/text/pattern_expression.h"

namespace {

constexpr size_t kNone = std::string_view::npos;

/// The first unescaped slash at or after from.
size_t NextSlash(std::string_view text, size_t from) {
    for (size_t at = from; at < text.size(); at++) {
        if (text[at] == '/') return at;
        if (text[at] == '\\') at++;
    }
    return kNone;
}

/// Not "/a\/", whose last slash is escaped.
bool IsEnclosed(std::string_view text) {
    if (text.size() < 2 || text.front() != '/') return false;
    size_t slash = 0;
    while (slash != kNone && slash + 1 < text.size()) slash = NextSlash(text, slash + 1);
    return slash != kNone;
}

std::string_view Inside(std::string_view enclosed) {
    return enclosed.substr(1, enclosed.size() - 2);
}

/// Only for the replacement: in a pattern PCRE2 itself reads "\/" as a slash.
std::string Unescaped(std::string_view replacement) {
    std::string result;
    for (size_t at = 0; at < replacement.size(); at++) {
        if (replacement.substr(at, 2) == "\\/") at++;
        result += replacement[at];
    }
    return result;
}

std::optional<PatternExpression> Substitution(std::string_view text) {
    if (!text.starts_with("s/")) return std::nullopt;
    const size_t middle = NextSlash(text, 2);
    const size_t end = middle == kNone ? kNone : NextSlash(text, middle + 1);
    if (end == kNone || end + 1 != text.size()) return std::nullopt;
    return PatternExpression{PatternExpression::Form::Substitute, std::string(text.substr(2, middle - 2)),
                             Unescaped(text.substr(middle + 1, end - middle - 1))};
}

}  // namespace

std::optional<PatternExpression> ParsePatternExpression(std::string_view text) {
    using Form = PatternExpression::Form;
    if (IsEnclosed(text)) return PatternExpression{Form::Select, std::string(Inside(text)), ""};
    if (text.starts_with('!') && IsEnclosed(text.substr(1))) {
        return PatternExpression{Form::Reject, std::string(Inside(text.substr(1))), ""};
    }
    return Substitution(text);
}

std::string_view WithoutSlashes(std::string_view pattern) {
    return IsEnclosed(pattern) ? Inside(pattern) : pattern;
}
