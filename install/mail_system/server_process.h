// Starting a server as a process of its own: the only place that forks.
#pragma once

#include "support/text/sstring_list.h"

/// Starts the program (the first of the arguments) as root's shell would: root's identity and groups, default
/// signals, none blocked, only the standard descriptors. Nobody waits for it, and a program that cannot be
/// run shows only in the child's status, 127. A process that cannot be made is tried for again, five times
/// within 15 seconds; then the result is false.
bool StartServer(SStringList arguments);
