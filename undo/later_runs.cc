#include "undo/later_runs.h"

#include "install/settings.h"
#include "undo/entries.h"
#include "undo/undone.h"

namespace {

/// What a change is about, in words, and what that is a part of.
struct Subjects {
    SStringList operator()(const change::DirectoryMade& made) const { return made.path; }
    SStringList operator()(const change::ModeSet& set) const { return set.path; }
    SStringList operator()(const change::HostFileRewritten& file) const { return file.path; }
    SStringList operator()(const change::LinkMade& made) const { return made.path; }
    SStringList operator()(const change::DatabasePrepared& prepared) const { return prepared.file; }
    SStringList operator()(const change::DatabaseExchanged& exchanged) const { return exchanged.file; }
    SStringList operator()(const change::DatabaseMade& made) const {
        if (made.table.IsEmpty()) return made.file;
        return {Table(made.file, made.table), made.file};
    }
    SStringList operator()(const change::SettingChanged& setting) const {
        const SString table = Table(setting.database, setting.table);
        return {"\"" + setting.key + "\" of " + table, table, setting.database};
    }
    /// However many runs have started it, only one runs.
    SStringList operator()(const change::ServerStarted& /*started*/) const { return gstr_ProductName; }
    SStringList operator()(const auto& /*change*/) const { return {}; }

  private:
    static SString Table(const SString& file, const SString& table) {
        return "the table " + table + " of " + file;
    }
};

SStringList SubjectsOf(const Change& change) {
    return std::visit(Subjects(), change);
}

const char* Done(const Change& change) {
    return std::holds_alternative<change::ServerStarted>(change) ? "started" : "changed";
}

}  // namespace

LaterRuns::LaterRuns(const Records& records, const SString& run) {
    for (const SString& name : records.After(run)) {
        const RecordedRun later = records.Read(name);
        for (const TimedChange& timed : later.changes) Remember(timed.change, records.KeptOf(name));
        const Undone undone = ReadUndone(records, name);
        if (!undone.IsFinished()) Take(later, undone);
    }
}

void LaterRuns::Remember(const Change& change, const SString& kept) {
    const auto* prepared = std::get_if<change::DatabasePrepared>(&change);
    if (prepared != nullptr) found_.push_back({*prepared, kept});
}

void LaterRuns::Take(const RecordedRun& run, const Undone& undone) {
    names_.Push(run.name);
    if (!run.fault.IsEmpty())
        refused_.Push("What this later run changed again is not known, as its record is refused: " +
                      run.name + ": " + run.fault);
    if (!undone.fault.IsEmpty())
        refused_.Push("Whether this later run was taken back is not known: " + undone.fault);
    for (const Entry& entry : EntriesOf(run.changes)) {
        if (!undone.taken_back.contains(entry.line)) Take(entry, run.name);
    }
}

void LaterRuns::Take(const Entry& entry, const SString& run) {
    if (const auto* maildrops = std::get_if<MaildropsGiven>(&entry.change)) {
        for (const change::MaildropGiven& given : *maildrops) maildrops_.insert(given.path);
        return;
    }
    const SStringList subjects = SubjectsOf(std::get<Change>(entry.change));
    if (!subjects.IsEmpty()) last_[subjects.Get(0)] = run;
}

SString LaterRuns::ChangedAgain(const Change& change) const {
    for (const SString& subject : SubjectsOf(change)) {
        const auto found = last_.find(subject);
        if (found == last_.end()) continue;
        return subject + " was " + Done(change) + " again by the later run " + found->second +
               ": take that one back first";
    }
    return "";
}
