// From the arguments to the exit status of Undo.
#pragma once

#include "support/text/sstring_list.h"

/// 0 where nothing is left of the run, 1 where something was left alone or is to be done by hand, 2 where
/// nothing was done (it could not, or was not to), 3 interrupted, 64 for wrong arguments.
int Undo(const SStringList& arguments);
