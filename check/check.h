// From the arguments to the exit status of Check.
#pragma once

#include "support/text/sstring_list.h"

/// 0 without problems, 1 with, 2 where it could not look: an argument that it does not know, a screen that
/// failed, or a configuration file that cannot be read.
int Check(const SStringList& arguments);
