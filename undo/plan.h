// What will be taken back, shown before it is asked about.
#pragma once

#include "undo/entries.h"

struct Planned {
    const Entry* entry;
    Finding finding;
};

/// In the order in which they will be done: backwards.
std::vector<Planned> PlanFor(const std::vector<Entry>& entries, const UndoneRun& run);

/// Whether there is anything to take back.
bool HasWork(const std::vector<Planned>& plan);
/// Whether another look would find the same: nothing waits for a later run, or cannot be told now.
bool IsFinal(const std::vector<Planned>& plan);
/// Whether something is left alone or left to the administrator.
bool LeavesAnything(const std::vector<Planned>& plan);

/// What will be done, what stays, what is to be done by hand and what is left alone, as far as there is any.
/// Of each kind of change the first twenty are named.
void ShowPlan(const std::vector<Planned>& plan);
