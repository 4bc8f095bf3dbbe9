// Signals to processes, recorded before they are sent.
#pragma once

#include "support/text/sstring_list.h"

/// Entries of ReadProcessInfo that SignalProcesses is called with next.
void RecordSignal(const SStringList& entries, int signal);

/// KillProgram and KillProgramOf, recorded.
bool KillRecorded(const SString& name, int signal);
bool KillRecordedOf(const SStringList& users, const SString& name, int signal);
