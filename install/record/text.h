// A change as a line of JSON, readable with a pager, and back. Bytes that are no UTF-8, and the control characters
// that JSON leaves as they are (U+007F to U+009F), are written as a backslash, "x" and two hexadecimal digits, a
// backslash itself twice: so every string comes back as it was.
#pragma once

#include <optional>

#include "install/record/change.h"

struct TimedChange {
    SString time;  // UTC: "2026-11-22T17:04:05Z"
    Change change;
};

/// With the line end: {"time":"...","kind":"mode","path":"/var/mail/",...}
SString LineOf(const TimedChange& timed);
/// Nothing unless the line is a change with all of its fields.
std::optional<TimedChange> ChangeFrom(const SString& line);

/// The first line of a record of this format.
SString FormatLine();
