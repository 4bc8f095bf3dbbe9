// Taking a run's changes back, one after the other.
#pragma once

#include "undo/plan.h"
#include "undo/undone.h"

struct Outcome {
    bool is_interrupted = false;  // by a signal, before all was taken back
    bool is_whole = true;         // false: trying again may help
    bool is_known = true;         // false: something could not be looked at, but maybe another time
    SStringList left;             // what was left alone, or is left to the administrator
};

/// Goes through all entries backwards and looks at each again, as what was taken back before may have changed
/// how it stands. Records what was done, and prints a line for each change that was taken back.
Outcome GoBack(const std::vector<Entry>& entries, const UndoneRun& run, UndoneRecord* record);
