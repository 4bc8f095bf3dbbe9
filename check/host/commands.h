// The host's own tools, asked for what they know: commands that a Debian may lack, and that may hang.
#pragma once

#include "support/text/sstring_list.h"

/// Whether the host has a program of this name where commands are looked for.
bool HasCommand(const SString& name);
/// The lines that the command prints, without their ends, as root sees them; given up after twenty seconds.
SStringList LinesOf(const SString& command);
