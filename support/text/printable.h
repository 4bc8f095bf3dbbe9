// Other people's text, made fit for a terminal or a mail's line.
#pragma once

#include "support/text/sstring.h"

/// The text with every control character replaced by "?", but for those kept. In UTF-8 these are U+0080 to
/// U+009F, too, and of the bytes that form no valid UTF-8 those that ISO 8859 has for them: a name in that
/// character set keeps its letters.
SString Printable(const SString& text, std::string_view kept = "");
