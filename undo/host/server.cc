// Stops the mail system that was started.
#include <csignal>

#include "install/host/await.h"
#include "install/host/probes.h"
#include "install/settings.h"
#include "install/site.h"
#include "support/process/listeners.h"
#include "support/process/process.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "undo/host/units.h"
#include "undo/ways.h"

namespace {

/// The unit that a process of the mail system is the service of; empty if there is none. One that merely was
/// started from within a unit, as Install may have been, is not managed by that.
SString ManagingUnit(const SStringList& processes) {
    const AsRoot root;
    for (const SString& process : processes) {
        const SString id(process.ToNumber());
        SStringList cgroups = Lines(MapFileRead("/proc/" + id + "/cgroup"));
        cgroups.Chop();
        SString unit = UnitIn(cgroups);
        if (!unit.IsEmpty() && MainProcess(unit) == id) return unit;
    }
    return "";
}

}  // namespace

Finding LookAt(const change::ServerStarted& /*change*/, const UndoneRun& /*run*/) {
    const SStringList processes = MailSystemProcesses();
    if (processes.IsEmpty()) return {};
    const SString unit = ManagingUnit(processes);
    if (unit.IsEmpty()) return {Standing::AsLeft, "Stop " + gstr_ProductName};
    return {Standing::Changed, gstr_ProductName + " is run by " + unit + " by now: systemctl stop " + unit};
}

TakenBack TakeBack(const change::ServerStarted& /*change*/, const UndoneRun& /*run*/) {
    KillProgramOf(MailSystemUsers(), gstr_ProductName, SIGTERM);
    Await([] { return MailSystemProcesses().IsEmpty(); });
    if (MailSystemProcesses().IsEmpty()) return {};
    return {false, gstr_ProductName + " does not end: pkill -KILL -x " + gstr_ProductName};
}
