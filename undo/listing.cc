#include "undo/listing.h"

#include "install/console.h"
#include "install/settings.h"
#include "support/system/run_lock.h"
#include "support/text/counted.h"
#include "support/text/printable.h"
#include "undo/entries.h"
#include "undo/undone.h"

namespace {

SString Ending(const RecordedRun& run) {
    if (!run.status) return "killed or not recorded to the end";
    return *run.status == 0 ? SString("complete") : "ended with status " + SString(*run.status);
}

/// "2026-11-22 17:04:05"
SString Plain(const SString& time) {
    return time.S("T", " ").S("Z$", "");
}

SString Fate(const Undone& undone) {
    if (!undone.fault.IsEmpty()) return "whether it was taken back is not known: " + undone.fault;
    if (!undone.is_begun) return "not taken back";
    if (undone.is_open) return "taken back in part";
    const SString fate = "taken back " + Plain(undone.finished);
    return undone.has_left ? fate + ", but something was left" : fate;
}

/// Install, which the run's name tells, has the lock then. Only for a list, without which Undo has it itself.
bool IsGoingOn(const RecordedRun& run) {
    const auto holder = run.status ? std::nullopt : RunLock::Holder(gstr_LockFile);
    return holder && run.name.EndsWith(("-" + SString(*holder)).Bytes());
}

SString DescribedNow(const RecordedRun& run) {
    return IsGoingOn(run) ? PlainTimeOf(run.name) + ", still going on" : Described(run);
}

bool ListRun(const Records& records, const RecordedRun& run) {
    if (!run.fault.IsEmpty()) {
        Print(run.name + ": refused: " + Printable(run.fault) + "\n");
        return false;
    }
    const Undone undone = ReadUndone(records, run.name);
    Print(run.name + ": " + DescribedNow(run) + ", " + Counted(EntriesOf(run.changes).size(), "change") +
          ", " + Printable(Fate(undone)) + "\n");
    return undone.fault.IsEmpty();
}

}  // namespace

SString Described(const RecordedRun& run) {
    return PlainTimeOf(run.name) + ", " + Ending(run);
}

bool ListRuns(const Records& records) {
    bool are_read = true;
    for (const SString& name : records.Names()) are_read = ListRun(records, records.Read(name)) && are_read;
    return are_read;
}

bool ListChanges(const Records& records, const SString& name) {
    const RecordedRun run = records.Read(name);
    if (!ListRun(records, run)) return false;
    for (const Entry& entry : EntriesOf(run.changes)) {
        Print("    " + Printable(Plain(entry.time)) + "  " + InWords(entry) + "\n");
    }
    if (run.is_cut) Print("    the record ends in the middle of a line\n");
    return true;
}
