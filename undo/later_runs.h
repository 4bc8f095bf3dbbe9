// What later runs have changed again: they are taken back first, or what they left would be lost.
#pragma once

#include <map>

#include "undo/records.h"

struct Undone;

class LaterRuns {
  public:
    /// Those after this run that are not taken back; of one that is in part, the changes that are not.
    LaterRuns(const Records& records, const SString& run);

    const SStringList& Names() const { return names_; }
    /// Those of which nothing is known: "RUN: why its record is refused".
    const SStringList& Refused() const { return refused_; }
    /// What is said of a change of the same path, database, table or setting, and of a start of the mail
    /// system; empty if none of them has changed or started that again. Signalled processes, accounts,
    /// messages, homes and maildrops are told apart by their own ways back.
    SString ChangedAgain(const Change& change) const;

  private:
    void Read(const Records& records, const SString& name, const Undone& undone);

    SStringList names_;
    SStringList refused_;
    std::map<SString, SString> last_;  // by what was changed: the last run
};
