// Counts and lists of names for people, who read no hundred thousand of them.
#pragma once

#include "support/text/sstring_list.h"

/// "1 login", "2 logins".
SString Counted(size_t count, const SString& thing);

/// The first twenty: "anna, bruno, and 3 more".
SString FirstOf(SStringList names);
