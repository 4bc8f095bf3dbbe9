// The run's changes of one kind, of those that a way back must know besides its own.
#pragma once

#include "undo/way_back.h"

template <typename Kind, typename Look>
void EachOf(const UndoneRun& run, const Look& look) {
    if (run.changes == nullptr) return;
    for (const Change& change : *run.changes) {
        if (const auto* found = std::get_if<Kind>(&change)) look(*found);
    }
}
