// The current time, in the forms that mail and the record need.
#pragma once

#include "support/text/sstring.h"

/// The local time as RFC 822 section 5 has it, with a four-digit year (RFC 1123):
/// "Sat, 21 Nov 2026 14:05:09 +0100".
SString RFC822Date();
/// UTC as RFC 3339 has it: "2026-11-21T13:05:09Z".
SString UniversalTime();
/// The current time in a compact form that is safe in file names: "20261121140509123456" (UTC, microseconds);
/// never the same twice in a process.
SString MessageIdDate();
