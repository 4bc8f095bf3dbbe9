// Other people's bytes as text that a pager shows as it is, and back.
//
//     Escaped("caf\xE9\t\\")    "caf\\xe9\\x09\\\\"
#pragma once

#include <optional>

#include "support/text/sstring.h"

/// Whether it needs no escapes and in quotes is a string of JSON, as every checksum and nearly every name is.
bool IsPlain(const SString& text);
/// UTF-8 without characters that a terminal obeys or hides.
SString Escaped(const SString& bytes);
/// Nothing where a backslash begins no escape.
std::optional<SString> Unescaped(const SString& text);
