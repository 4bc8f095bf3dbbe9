// The lists that the administrator is shown before servers are stopped, as text.
#pragma once

#include "support/text/sstring_list.h"

/// A line for each service whose port (at the same index) is among the listening ones: "smtp      (port=25)".
SStringList BusyServices(const SStringList& services, const SStringList& ports, const SStringList& listening);

/// The process names (from entries of ReadProcessInfo), sorted, each once, four to an indented row, without
/// those that nobody should stop. An empty line follows, even without any name.
SString ProcessTable(SStringList processes);
