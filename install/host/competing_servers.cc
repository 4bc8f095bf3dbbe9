// Finds the servers that hold the mail system's ports and stops those that the administrator names.
#include <csignal>
#include <cstdint>

#include "install/console.h"
#include "install/host/await.h"
#include "install/host/probes.h"
#include "install/host/server_lists.h"
#include "install/record/signalled.h"
#include "install/reminders.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/process/process.h"
#include "support/text/printable.h"

namespace {

constexpr long kServiceIndent = 20;
constexpr long kResultIndent = 8;

SStringList BusyNow() {
    return BusyServices(gstrl_Services, gstrl_ServicePorts, ListeningPorts());
}

void TellWhatIsBusy(const SStringList& busy) {
    BreakProgress();
    Tell(
        "tern.harbor replaces many services, some of which are currently active. Before you can start up "
        "tern.harbor, you will have to shutdown these servers. You have active servers for the following:");
    PrintIndented(kServiceIndent, busy);
    Print("\n");
}

void OfferProcessTable() {
    Tell(
        "If you don't already know the names of the servers that have these ports open, they can be listed "
        "for you. Do you want to see a list of processes currently running on your system?");
    if (Ask(QuestionId::ListProcesses) != 'y') return;
    Tell("Here is a list of some of the processes currently running on your system:");
    Print(ProcessTable(RunningProcesses()));
}

SStringList AskWhichToKill() {
    Tell(
        {"Please specify which processes need to be killed to free up the services noted above. To kill "
         "them, list them here separated by commas or spaces.",
         "Press 'Return' if you don't want any processes killed."});
    return AskLine(QuestionId::WhichProcesses).Split("[\\s,]+").Grep("/\\S/");
}

void LeaveServers(const SStringList& busy) {
    SStringList reminders;
    for (const SString& service : busy) reminders.Push("Shutdown server:    " + service);
    Remind(reminders);
    gf_ShowStoppers = 1;
    Tell("No processes killed.");
}

/// inetd is not stopped: it rereads its changed configuration and closes the ports.
bool HangUpInetd() {
    if (KillRecorded("inetd", SIGHUP)) {
        PrintIndented(kResultIndent, "Killed (with -HUP) inetd");
        return true;
    }
    PrintIndented(kResultIndent, "Couldn't 'kill -HUP [inetd-pid]'");
    gstrl_Reminders.Push("Kill -HUP [inetd-pid]");
    return false;
}

bool StopServer(const SString& name) {
    const SString shown = Printable(name, "\t");
    if (KillRecorded(name, SIGTERM)) {
        PrintIndented(kResultIndent, "Killed " + shown);
        gstrl_Reminders.Push("Prevent boot startup of '" + shown + "'");
        return true;
    }
    PrintIndented(kResultIndent, "Couldn't kill " + shown);
    gstrl_Reminders.Push("Kill program (and prevent boot startup): " + shown);
    gf_ShowStoppers = 1;
    return false;
}

void StopServers(const SStringList& names) {
    bool reached = false;
    for (const SString& name : names) {
        if (name == "inetd" ? HangUpInetd() : StopServer(name)) reached = true;
    }
    Print("\n");
    gstrl_Reminders.Push("");
    // A server takes a moment to close its port, and the mail system is started next.
    if (reached) Await([] { return BusyNow().IsEmpty(); });
}

}  // namespace

bool KillServers() {
    BeginProgress("Checking for active server processes");
    const SStringList busy = BusyNow();
    if (busy.IsEmpty()) {
        EndProgress("none found (that's good)");
        return true;
    }
    gf_TernHarborIsRunning = static_cast<int32_t>(MailSystemProcesses().Count());
    if (gf_TernHarborIsRunning != 0) {
        EndProgress("tern.harbor is running");
        return true;
    }
    TellWhatIsBusy(busy);
    OfferProcessTable();
    const SStringList names = AskWhichToKill();
    if (names.IsEmpty()) {
        LeaveServers(busy);
    } else {
        StopServers(names);
    }
    return true;
}
