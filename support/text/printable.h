// Other people's text made safe to show on a terminal or in a mail's line.
#pragma once

#include "support/text/sstring.h"

/// The text with "?" for every control character that is not in kept. U+0080 to U+009F are control
/// characters, too; a byte of no valid UTF-8 is judged as ISO 8859, so that a name in that character set
/// keeps its letters.
SString Printable(const SString& text, std::string_view kept = "");
