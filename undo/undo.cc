// Chooses a run, shows what would be taken back, asks, and goes back.
#include "undo/undo.h"

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

#include "install/console.h"
#include "install/one_copy.h"
#include "install/process_state.h"
#include "install/record/record.h"
#include "install/settings.h"
#include "install/signals.h"
#include "install/site.h"
#include "install/site_faults.h"
#include "install/steps.h"
#include "support/process/process.h"
#include "support/system/identity.h"
#include "undo/going_back.h"
#include "undo/listing.h"
#include "undo/options.h"

namespace {

constexpr int kNothingLeft = 0;
constexpr int kSomethingLeft = 1;
constexpr int kNothingDone = 2;
constexpr int kEndedBySignal = 3;
constexpr int kMisused = 64;
constexpr long kIndent = 4;

int Misused() {
    std::cerr << Usage();
    return kMisused;
}

int Refuse(const SString& reason) {
    PrintParagraph(reason);
    return kNothingDone;
}

int RefuseUnknown(const SString& name) {
    return Refuse("There is no record of a run " + name + " in " + gstr_Runs + ".");
}

int List(const Records& records, const SString& name) {
    if (!name.IsEmpty() && !records.Names().Contains(name)) return RefuseUnknown(name);
    if (records.Names().IsEmpty()) {
        PrintParagraph("No run is recorded in " + gstr_Runs + ".");
        return kNothingLeft;
    }
    const bool is_listed = name.IsEmpty() ? ListRuns(records) : ListChanges(records, name);
    return is_listed && std::cout ? kNothingLeft : kNothingDone;
}

/// A script that runs Undo twice must not go back two runs.
bool IsDone(const Records& records, const SString& run, const UndoOptions& options) {
    const Undone undone = ReadUndone(records, run);
    const bool wants_more =
        (options.accounts && !undone.options.accounts) || (options.units && !undone.options.units);
    return !undone.finished.IsEmpty() && !wants_more;
}

void TellLaterRuns(const Records& records, const SString& name) {
    SStringList later;
    for (const SString& run : records.Names()) {
        if (run > name && ReadUndone(records, run).finished.IsEmpty()) later.Push(run);
    }
    if (!later.IsEmpty()) Tell("Later runs are not taken back: " + later.Join(", ") + ".");
}

void TellHowItEnded(const RecordedRun& run) {
    if (run.is_cut) Tell("The record ends in the middle of a line, which is left out.");
    if (!run.status) {
        Tell(
            "The run was killed, or its record could not be written to the end: there may be changes that it "
            "does not name.");
    }
}

/// What goes back needs neither the host's name nor its address.
bool DetermineOwner() {
    for (const SiteFact& fact : SiteFacts()) {
        const bool is_needed = fact.fault != SiteFault::NoHostName && fact.fault != SiteFault::NoAddress;
        if (fact.find() || !is_needed) continue;
        TellFault(fact.fault);
        return false;
    }
    return true;
}

bool LowerPrivileges() {
    const auto uid = static_cast<uid_t>(gn_MailUID);
    return BecomeMailOwner(gstr_MailOwner, uid, static_cast<gid_t>(gn_MailGID));
}

SString NextOf(const Records& records, const SString& name) {
    for (const SString& run : records.Names()) {
        if (run > name) return TimeOf(run);
    }
    return "";
}

bool IsAgreed() {
    Print("Do you want this to be done? yes/no [no] ");
    SString answer;
    if (std::cout) std::cin >> answer;
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

int GoBackFrom(const Records& records, const Options& options) {
    const SStringList names = records.Names();
    const SString name = options.run.IsEmpty() ? names.Get(static_cast<int>(names.Count()) - 1) : options.run;
    if (!names.Contains(name)) return RefuseUnknown(name);
    if (options.run.IsEmpty() && IsDone(records, name, options.undo)) {
        PrintParagraph("The last run, " + name +
                       ", has been taken back already. An earlier one has to be named: "
                       "Undo RUN, of those that Undo --list shows.");
        return kNothingLeft;
    }
    const RecordedRun run = records.Read(name);
    if (!run.fault.IsEmpty())
        return Refuse("The record of the run " + name + " is refused: " + run.fault + ".");
    if (!DetermineOwner()) return kNothingDone;
    Tell("The run of " + Described(run) + " (" + name + "):");
    TellHowItEnded(run);
    TellLaterRuns(records, name);
    return TakeBackRun(records, run, options);
}

/// As Install's start-up.
int Start(const Options& options) {
    SettleProcess();
    RememberGroups();
    if (getuid() != 0) return Refuse("You must be root to run Undo.");
    umask(007);
    Initialize();
    NameRecord("");  // nothing that Undo does is a run's change
    const Records records(gstr_Runs);
    if (!records.Fault().IsEmpty()) return Refuse(records.Fault() + ".");
    if (options.list) return List(records, options.run);
    const auto other = AnotherCopy();
    if (other) return Refuse(*other);
    SetupSignalHandler();
    if (records.Names().IsEmpty() && options.run.IsEmpty()) {
        PrintParagraph("No run is recorded in " + gstr_Runs + ": there is nothing to take back.");
        return kNothingLeft;
    }
    return GoBackFrom(records, options);
}

}  // namespace

int Undo(const SStringList& arguments) {
    const std::optional<Options> options = OptionsFrom(arguments);
    if (!options) return Misused();
    if (options->help) {
        std::cout << Usage() << std::flush;
        return kNothingLeft;
    }
    return Start(*options);
}
