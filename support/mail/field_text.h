// The text form of named fields, as control files have it (docs/queue.md). A line a field, its further values
// on lines that begin with a tab:
//
//     Function: Account-Manager
//     Account-To: Jones_Smith bodil4
//     <tab>Ann_Lee catin2
//     Nothing:
//
// A name is what stands up to and with the first colon. One blank separates it from the first value; all that
// follows is the value, so that leading blanks and empty values are kept. A name alone has no values.
#pragma once

#include <optional>

#include "support/text/named_list.h"

/// The fields as text, each line closed by line_end ("\n" or "\r\n"). Nothing when a field could not be read
/// back as it is: a name without its colon or with a blank, a value with a NUL or a line end in it.
std::optional<SString> FieldText(const SNamedStringList& fields, const SString& line_end);

/// The fields of such a text, of either line end. Nothing when it has another shape, or ends within a line.
std::optional<SNamedStringList> ParseFieldText(const SString& text);
