// The one door to external commands (popen).
#pragma once

#include <chrono>

#include "support/text/sstring_list.h"

/// The command's standard output as entries of at most 511 bytes, line ends kept; empty if it cannot be
/// started. Its exit status is ignored. The shell runs it with the terminal's signals ignored, in an
/// environment of PATH and LC_ALL (C.UTF-8) alone. It inherits only the standard descriptors.
SStringList ReadCommand(const SString& command);
/// The simple command, to be killed where it takes longer; its exit status is 137 then.
SString WithTimeLimit(const SString& command, std::chrono::seconds limit);
/// The listing of sendmail's queue; to be called as root.
SStringList ReadMailq();
