// Pattern expressions as text: "/re/", "!/re/" and "s/re/replacement/". "\/" is a slash inside one.
#pragma once

#include <optional>

#include "support/text/sstring.h"

struct PatternExpression {
    enum class Form { kSelect, kReject, kSubstitute };
    Form form = Form::kSelect;
    SString pattern;
    SString replacement;
};

/// Nothing when the text has none of the three forms.
std::optional<PatternExpression> ParsePatternExpression(const SString& text);
/// The pattern without the slashes around it, where it has them.
SString WithoutSlashes(const SString& pattern);
