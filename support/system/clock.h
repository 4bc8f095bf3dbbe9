// The current time, in the forms that mail and the record need.
#pragma once

#include <cstdint>
#include <optional>

#include "support/text/sstring.h"

/// The local time as RFC 822 section 5 has it, with a four-digit year (RFC 1123):
/// "Sat, 21 Nov 2026 14:05:09 +0100".
SString RFC822Date();
/// UTC as RFC 3339 has it: "2026-11-21T13:05:09Z".
SString UniversalTime();
/// Seconds since 1970, of a date exactly as RFC822Date writes it; nothing for any other text.
std::optional<int64_t> TimeOfRFC822Date(const SString& date);
/// The same of a time as UniversalTime writes it.
std::optional<int64_t> TimeOfUniversal(const SString& time);
/// The current time in a compact form that is safe in file names: "20261121140509123456" (UTC, microseconds);
/// never the same twice in a process.
SString MessageIdDate();
