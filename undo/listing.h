// The runs that are recorded, and what one of them changed, in plain words.
#pragma once

#include "undo/records.h"

/// "2026-11-22 17:04:05 UTC, complete"
SString Described(const RecordedRun& run);
/// Prints a line for each run, the oldest first. False if a record is refused; why has been told.
bool ListRuns(const Records& records);
/// Prints a line for each change of the run.
bool ListChanges(const Records& records, const SString& name);
