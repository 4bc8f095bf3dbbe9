// One copy of the program at a time on a host: two would undo each other's work.
#pragma once

#include <optional>

#include "support/text/sstring.h"

/// Makes this process the one copy until it ends; to be called once, as root. What to tell where another is.
std::optional<SString> AnotherCopy();
