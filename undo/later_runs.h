// What later runs have changed again: they are taken back first, or what they left would be lost.
#pragma once

#include <map>
#include <set>
#include <vector>

#include "undo/records.h"

struct Entry;
struct Undone;

/// A new version of a module database as a later run found it: once that is taken back, this is what is
/// there.
struct FoundVersion {
    change::DatabasePrepared prepared;
    SString kept;  // the folder of copies beside that run's record
};

class LaterRuns {
  public:
    LaterRuns(const Records& records, const SString& run);

    /// Those after this run that are not taken back.
    const SStringList& Names() const { return names_; }
    /// Those whose record, or that of taking them back, is refused: what is not known therefore, and why. The
    /// latter count as not taken back.
    const SStringList& Refused() const { return refused_; }
    /// What is said of a change of the same path, database, table or setting, and of a start of the mail
    /// system; empty if none of them has changed or started that again. Signalled processes, accounts,
    /// messages and homes are told apart by their own ways back. Of a run that is taken back in
    /// part only the changes count that are not.
    SString ChangedAgain(const Change& change) const;
    /// Whether one of them has given that maildrop again.
    bool HaveGivenAgain(const change::MaildropGiven& given) const { return maildrops_.contains(given.path); }
    /// Of all runs after this one, taken back or not.
    const std::vector<FoundVersion>& FoundVersions() const { return found_; }

  private:
    void Remember(const Change& change, const SString& kept);
    void Take(const RecordedRun& run, const Undone& undone);
    void Take(const Entry& entry, const SString& run);

    SStringList names_;
    SStringList refused_;
    std::map<SString, SString> last_;  // by what was changed: the last run
    std::set<SString> maildrops_;
    std::vector<FoundVersion> found_;
};
