#include "undo/one_run.h"

#include <csignal>

#include "install/console.h"
#include "install/settings.h"
#include "install/site.h"
#include "support/process/process.h"
#include "support/system/identity.h"
#include "undo/going_back.h"
#include "undo/listing.h"

namespace {

constexpr long kIndent = 4;

bool LowerPrivileges() {
    const auto uid = static_cast<uid_t>(gn_MailUID);
    return BecomeMailOwner(gstr_MailOwner, uid, static_cast<gid_t>(gn_MailGID));
}

SString NextOf(const Records& records, const SString& name) {
    const SStringList later = records.After(name);
    return later.IsEmpty() ? SString() : TimeOf(later[0]);
}

/// Not asked as Install does, which ends with "Installation aborted." where it cannot hear the answer.
bool IsAgreed() {
    Print("Do you want this to be done? yes/no [no] ");
    SString answer = ReadAnswer().value_or("");
    Print("\n");
    return answer.LowerCase().StartsWith("y");
}

/// It runs on where the run only told it to read its configuration, which is another one again by now.
void HangUpMailSystem() {
    if (KillProgramOf(MailSystemUsers(), gstr_ProductName, SIGHUP)) {
        PrintParagraph(gstr_ProductName + " was told to read its configuration again.");
    }
}

int Report(const Outcome& outcome, const UndoneRecord& record) {
    Print("\n");
    if (outcome.is_interrupted) {
        PrintParagraph("Interrupted: run Undo again to go on.");
        return kEndedBySignal;
    }
    if (outcome.is_whole) HangUpMailSystem();
    if (!record.IsWhole()) PrintParagraph("What was done could not be recorded.");
    if (!outcome.is_whole) PrintParagraph("Not everything could be taken back: run Undo again to go on.");
    if (!outcome.left.IsEmpty()) {
        PrintParagraph("Left alone or to be done by hand:");
        PrintIndented(kIndent, outcome.left);
    }
    if (!outcome.is_whole || !outcome.left.IsEmpty()) return kSomethingLeft;
    PrintParagraph("The run is taken back.");
    return kNothingLeft;
}

/// Homes and maildrops are not looked at beforehand: what was done there is known from Undo's own record.
bool IsDoneAtHomes(const Entry& entry, const Undone& undone) {
    const auto* change = std::get_if<Change>(&entry.change);
    const bool is_at_homes = change == nullptr || std::holds_alternative<change::NoticesLeft>(*change);
    return is_at_homes && undone.taken_back.contains(entry.line);
}

std::vector<Entry> EntriesToTakeBack(const Records& records, const RecordedRun& run) {
    std::vector<Entry> entries = EntriesOf(run.changes);
    const Undone undone = ReadUndone(records, run.name);
    std::erase_if(entries, [&](const Entry& entry) { return IsDoneAtHomes(entry, undone); });
    return entries;
}

}  // namespace

int Refuse(const SString& reason) {
    PrintParagraph(reason);
    return kNothingDone;
}

void TellWhich(const RecordedRun& run) {
    Tell("The run of " + Described(run) + " (" + run.name + "):");
    if (run.is_cut) Tell("The record ends in the middle of a line, which is left out.");
    if (!run.status) {
        Tell(
            "The run was killed, or its record could not be written to the end: there may be changes that it "
            "does not name.");
    }
}

int TakeBackRun(const Records& records, const RecordedRun& read, const Options& options) {
    std::vector<Change> changes;
    for (const TimedChange& timed : read.changes) changes.push_back(timed.change);
    const UndoneRun run{records.KeptOf(read.name),
                        records.KeyOf(read.name),
                        TimeOf(read.name),
                        NextOf(records, read.name),
                        options.undo,
                        &changes};
    const std::vector<Entry> entries = EntriesToTakeBack(records, read);
    UndoneRecord record(records, read.name);
    if (!LowerPrivileges()) return Refuse("The rights of " + gstr_MailOwner + " could not be taken on.");
    const std::vector<Planned> plan = PlanFor(entries, run);
    ShowPlan(plan);
    if (!HasWork(plan)) {
        PrintParagraph("There is nothing to take back.");
        return LeavesAnything(plan) ? kSomethingLeft : kNothingLeft;
    }
    if (!options.yes && !IsAgreed()) return Refuse("Nothing was changed.");
    return Report(GoBack(entries, run, &record), record);
}
