// Starts as Install does, and chooses the run.
#include "undo/undo.h"

#include <sys/stat.h>
#include <unistd.h>

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
#include "support/system/identity.h"
#include "support/text/printable.h"
#include "undo/later_runs.h"
#include "undo/listing.h"
#include "undo/one_run.h"
#include "undo/undone.h"

namespace {

int Misused() {
    std::cerr << Usage();
    return kMisused;
}

int RefuseUnknown(const SString& name) {
    return Refuse("There is no record of a run " + name + " in " + gstr_Runs + ".");
}

/// Or it would be taken back twice, and somebody's work with it.
int RefuseUndone(const Undone& undone) {
    return Refuse("What has been taken back already is not known: " + undone.fault + ".");
}

/// Install records nothing where the directory is missing, which it may be since a clean-up.
void TellNoRun(const Records& records, const SString& consequence) {
    PrintParagraph((records.IsThere() ? "No run is recorded in " + gstr_Runs
                                      : "There is no " + gstr_Runs + ", so that Install records nothing") +
                   consequence);
}

int List(const Records& records, const SString& name) {
    if (!name.IsEmpty() && !records.Names().Contains(name)) return RefuseUnknown(name);
    if (records.Names().IsEmpty()) {
        TellNoRun(records, ".");
        return kNothingLeft;
    }
    const bool is_listed = name.IsEmpty() ? ListRuns(records) : ListChanges(records, name);
    return is_listed && std::cout ? kNothingLeft : kNothingDone;
}

void TellLaterRuns(const LaterRuns& later) {
    if (!later.Names().IsEmpty()) Tell("Later runs are not taken back: " + later.Names().Join(", ") + ".");
    for (const SString& refused : later.Refused()) Tell(Printable(refused) + ".");
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

/// As it ended then.
int TellTakenBack(const SString& name, const Undone& undone) {
    const SString what =
        undone.has_left ? ", but something was left: Undo " + name + " shows what. An" : SString(". An");
    PrintParagraph("The last run, " + name + ", has been taken back already" + what +
                   " earlier one has to be named: Undo RUN, of those that Undo --list shows.");
    return undone.has_left ? kSomethingLeft : kNothingLeft;
}

int GoBackFrom(const Records& records, const Options& options) {
    const SStringList names = records.Names();
    const SString name = options.run.IsEmpty() ? names.Get(static_cast<int>(names.Count()) - 1) : options.run;
    if (!names.Contains(name)) return RefuseUnknown(name);
    // A script that runs Undo twice must not go back two runs.
    const Undone undone = ReadUndone(records, name);
    if (!undone.fault.IsEmpty()) return RefuseUndone(undone);
    if (options.run.IsEmpty() && IsDone(undone, options.undo)) return TellTakenBack(name, undone);
    const RecordedRun run = records.Read(name);
    if (!run.fault.IsEmpty())
        return Refuse("The record of the run " + name + " is refused: " + run.fault + ".");
    if (!DetermineOwner()) return kNothingDone;
    TellWhich(run);
    const LaterRuns later(records, name);
    TellLaterRuns(later);
    return TakeBackRun(records, run, undone, later, options);
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
        TellNoRun(records, ": there is nothing to take back.");
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
