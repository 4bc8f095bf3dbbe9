// The text form of named fields in control files (docs/queue.md): one line for each field, its further values
// on lines that begin with a tab:
//
//     Function: Account-Manager
//     Account-To: Jones_Smith bodil4
//     <tab>Ann_Lee catin2
//     Nothing:
//
// A name ends with the first colon, which is part of it. One blank separates it from the first value; all the
// rest is the value, so leading blanks and empty values are kept. A name alone has no values.
#pragma once

#include <optional>

#include "support/text/named_list.h"

/// The fields as text, each line ended by line_end ("\n" or "\r\n"). Nullopt if a field could not be read
/// back unchanged: a name without its colon or with a blank, a value with a NUL or a line end.
std::optional<SString> FieldText(const SNamedStringList& fields, const SString& line_end);

/// The fields of such a text, with either line end. Nullopt if it is malformed or its last line is
/// incomplete.
std::optional<SNamedStringList> ParseFieldText(const SString& text);
