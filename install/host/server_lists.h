// The lists that the administrator is shown before servers are stopped, as text.
#pragma once

#include "support/text/sstring_list.h"

/// A line for each service (a name and, at the same index, its port) whose port is among the listening ones:
/// "smtp      (port=25)".
SStringList BusyServices(const SStringList& services, const SStringList& ports, const SStringList& listening);

/// The names of the processes (entries of ReadProcessInfo) four to an indented row, each once, sorted,
/// without those that nobody should stop. The last row and an empty line are ended, also when there is no
/// name.
SString ProcessTable(SStringList processes);
