// The one door to external commands (popen).
#pragma once

#include "support/text/sstring_list.h"

/// The command's standard output as entries of at most 511 bytes, line ends kept; empty when it cannot be
/// started. Its exit status is not examined. It is run by the shell with the terminal's signals ignored, in
/// the C.UTF-8 locale and without the variables that change what ps prints, so that neither a Ctrl-C nor
/// root's environment changes the outcome. Only the three standard descriptors are inherited.
SStringList ReadCommand(const SString& command);
/// The listing of sendmail's queue; to be called as root.
SStringList ReadMailq();
