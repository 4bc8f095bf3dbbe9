// Parses pattern expressions: "/re/" selects, "!/re/" rejects, "s/re/replacement/" substitutes; "\/" is a
// slash inside one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

struct PatternExpression {
    enum class Form { Select, Reject, Substitute };
    Form form = Form::Select;
    std::string pattern;
    std::string replacement;
};

/// Nullopt if the text has none of the three forms; "s/a/b/g", with a flag, has none, but "/a/b/" selects by
/// "a/b". The pattern may still be malformed (see Pattern::IsValid).
std::optional<PatternExpression> ParsePatternExpression(std::string_view text);
/// The pattern without the slashes around it; unchanged if it is not enclosed ("/", "/a", "/a\/").
std::string_view WithoutSlashes(std::string_view pattern);
