// A change as a line of JSON, readable with a pager, and back. Bytes that are no UTF-8, and those of
// characters that a terminal does not show (controls, line separators, marks of direction), are written as a
// backslash, "x" and two hexadecimal digits, a backslash itself twice: so every string comes back as it was.
#pragma once

#include <optional>

#include "install/record/change.h"

struct TimedChange {
    SString time;  // UTC: "2026-11-22T17:04:05Z"
    Change change;
};

/// With the line end: {"time":"...","kind":"mode","path":"/var/mail/",...}
SString LineOf(const TimedChange& timed);
SString LineOf(const SString& time, const Change& change);
/// Of a line with or without its end. Nothing unless LineOf could have written it.
std::optional<TimedChange> ChangeFrom(const SString& line);

/// The first line of a record of this format.
SString FormatLine();
