// Undo's own record, RUN.undone beside the run's: what was done about each change. A line of JSON each:
//
//     {"time":"2026-11-23T08:00:00Z","begun":true,"accounts":false,"units":false}
//     {"time":"2026-11-23T08:00:01Z","change":12,"outcome":"taken back","left":[]}
//     {"time":"2026-11-23T08:00:02Z","finished":true,"accounts":false,"units":false,"left":false}
//
// Without the last line Undo was interrupted; it is run again then, and adds its lines.
#pragma once

#include <set>

#include "undo/records.h"
#include "undo/way_back.h"

/// What is recorded of taking a run back.
struct Undone {
    SString fault;  // why it is not known: "RUN.undone: others can write it"; empty if it is
    bool is_begun = false;
    bool is_open = false;         // the last one that began has not finished
    SString finished;             // when the last one finished; empty if none has
    UndoOptions options;          // with all that finished
    bool has_left = false;        // the one that finished last has named something
    std::set<size_t> taken_back;  // changes, by their lines, of which nothing was left
    std::set<size_t> as_before;   // those that one that finished found so

    bool IsFinished() const { return !finished.IsEmpty() && !is_open; }
};

/// Of a run that nobody has begun to take back, there is nothing to read.
Undone ReadUndone(const Records& records, const SString& run);

/// Whether all that is wanted now was finished, and none that began later is still open.
bool IsDone(const Undone& undone, const UndoOptions& wanted);

/// The words for a change that was taken back, and for one that needed not be.
inline constexpr char kTakenBack[] = "taken back";
inline constexpr char kAsBefore[] = "as before";

class UndoneRecord {
  public:
    UndoneRecord(const Records& records, const SString& run) : records_(records), run_(run) {}
    /// Begun with the first change that is taken back.
    void Begin(const UndoOptions& options);
    /// The change by its line in the record.
    void Add(size_t change, const SString& outcome, const SStringList& left);
    void Finish(const UndoOptions& options, bool has_left);
    /// Every line so far is written.
    bool IsWhole() const { return is_whole_; }

  private:
    void Write(const SString& line);

    const Records& records_;
    SString run_;
    Descriptor file_;
    bool is_whole_ = true;
};
