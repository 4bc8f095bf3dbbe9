// Makes untrusted text safe to show on a terminal or in a line of a mail.
#pragma once

#include "support/text/sstring.h"

/// The text with "?" for every control character that is not in kept: U+0080 to U+009F included, and those of
/// Unicode that break lines or turn the direction of writing over. Bytes that are not valid UTF-8 are taken
/// as ISO 8859, so that a name in that character set keeps its letters.
SString Printable(const SString& text, std::string_view kept = "");
