// Starting a server as a process of its own.
#pragma once

#include "support/text/sstring_list.h"

/// Starts the program (the first argument) as root's shell would: root's identity and groups, default
/// signals, only the standard descriptors; but in a session of its own, so that neither Ctrl-C nor the end of
/// the terminal reaches it. Does not wait for it; a program that cannot be run only shows in
/// the child's status, 127. False if fork failed five times within 15 seconds.
bool StartServer(SStringList arguments);
