#include "undo/one_run.h"

#include <csignal>
#include <set>

#include "install/console.h"
#include "install/settings.h"
#include "install/site.h"
#include "support/process/process.h"
#include "support/system/identity.h"
#include "undo/going_back.h"
#include "undo/listing.h"

namespace {

constexpr long kIndent = 4;
constexpr char kNotRecorded[] = "What was done could not be recorded.";

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

/// The changes go back nevertheless: that they have gone back is forgotten, and they are looked at again.
void TellUnrecorded(const Records& records) {
    const AsRoot root;
    const SString fault = records.WriteFault();
    if (!fault.IsEmpty()) Tell("What is done cannot be recorded in " + gstr_Runs + ": " + fault + ".");
}

int Report(const Outcome& outcome, const UndoneRecord& record) {
    Print("\n");
    if (outcome.is_interrupted) {
        PrintParagraph("Interrupted: run Undo again to go on.");
        return kEndedBySignal;
    }
    HangUpMailSystem();
    if (!record.IsWhole()) PrintParagraph(kNotRecorded);
    if (!outcome.is_whole) PrintParagraph("Not everything could be taken back: run Undo again to go on.");
    if (!outcome.left.IsEmpty()) {
        PrintParagraph("Left alone or to be done by hand:");
        PrintIndented(kIndent, outcome.left);
    }
    if (!outcome.is_whole || !outcome.left.IsEmpty()) return kSomethingLeft;
    PrintParagraph("The run is taken back.");
    return kNothingLeft;
}

/// The plan names the others.
void RecordAsBefore(const std::vector<Entry>& entries, const std::vector<Planned>& plan,
                    UndoneRecord* record) {
    std::set<const Entry*> others;
    for (const Planned& planned : plan) others.insert(planned.entry);
    for (const Entry& entry : entries) {
        if (!others.contains(&entry)) record->Add(entry.line, kAsBefore, {});
    }
}

/// An Undo that ended right after its last change has told neither the mail system nor its own record.
int ReportNothing(const std::vector<Entry>& entries, const std::vector<Planned>& plan, const Undone& undone,
                  const UndoOptions& options, UndoneRecord* record) {
    PrintParagraph("There is nothing to take back.");
    if (undone.is_open) HangUpMailSystem();
    // What nobody has taken back may be somebody's only for now.
    const bool is_finished = plan.empty() || (undone.is_begun && IsFinal(plan));
    const bool has_left = LeavesAnything(plan);
    if (is_finished && (!IsDone(undone, options) || undone.has_left != has_left)) {
        record->Begin(options);
        RecordAsBefore(entries, plan, record);
        record->Finish(options, has_left);
    }
    if (!record->IsWhole()) PrintParagraph(kNotRecorded);
    return has_left ? kSomethingLeft : kNothingLeft;
}

/// Whether it is told with no other change, and stands by itself: what is as before once is back.
bool IsOfHost(const Entry& entry) {
    const auto* change = std::get_if<Change>(&entry.change);
    return change != nullptr && (std::holds_alternative<change::DirectoryMade>(*change) ||
                                 std::holds_alternative<change::ModeSet>(*change) ||
                                 std::holds_alternative<change::HostFileRewritten>(*change) ||
                                 std::holds_alternative<change::LinkMade>(*change) ||
                                 std::holds_alternative<change::ServerStarted>(*change));
}

/// What was taken back once, by Undo or by hand, is another run's or somebody's if it is there again.
std::vector<Entry> EntriesToTakeBack(const RecordedRun& run, const Undone& undone) {
    std::vector<Entry> entries = EntriesOf(run.changes);
    std::erase_if(entries, [&](const Entry& entry) {
        return undone.taken_back.contains(entry.line) ||
               (IsOfHost(entry) && undone.as_before.contains(entry.line));
    });
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

int TakeBackRun(const Records& records, const RecordedRun& read, const Undone& undone, const LaterRuns& later,
                const Options& options) {
    std::vector<Change> changes;
    for (const TimedChange& timed : read.changes) changes.push_back(timed.change);
    const std::vector<Entry> entries = EntriesToTakeBack(read, undone);
    const UndoneRun run{records.KeptOf(read.name),
                        records.KeyOf(read.name),
                        TimeOf(read.name),
                        NextOf(records, read.name),
                        options.undo,
                        &changes,
                        &later,
                        &entries};
    UndoneRecord record(records, read.name);
    if (!LowerPrivileges()) return Refuse("The rights of " + gstr_MailOwner + " could not be taken on.");
    const std::vector<Planned> plan = PlanFor(entries, run);
    ShowPlan(plan);
    if (!HasWork(plan)) return ReportNothing(entries, plan, undone, options.undo, &record);
    TellUnrecorded(records);
    if (!options.yes && !IsAgreed()) return Refuse("Nothing was changed.");
    return Report(GoBack(entries, run, &record), record);
}
