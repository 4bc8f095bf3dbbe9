// Taking one run back: what would be done is shown, asked about, done and reported.
#pragma once

#include "undo/later_runs.h"
#include "undo/options.h"
#include "undo/records.h"
#include "undo/undone.h"

/// What Undo exits with.
enum Status : int {
    kNothingLeft = 0,
    kSomethingLeft = 1,
    kNothingDone = 2,
    kEndedBySignal = 3,
    kMisused = 64
};

/// Prints why nothing is done.
int Refuse(const SString& reason);
/// Prints which run it is, and what its record lacks.
void TellWhich(const RecordedRun& run);
/// As root; goes on as the mail owner.
int TakeBackRun(const Records& records, const RecordedRun& read, const Undone& undone, const LaterRuns& later,
                const Options& options);
