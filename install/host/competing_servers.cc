// Other servers that hold the mail system's ports are found and, as the administrator says, stopped.
#include <csignal>

#include "install/console.h"
#include "install/host/await.h"
#include "install/host/server_lists.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/system/process.h"
#include "support/text/printable.h"

namespace {

const SString kIndent(' ', 8);
const SString kServiceIndent(' ', 20);

SStringList BusyNow() {
    return BusyServices(gstrl_Services, gstrl_ServicePorts, BoundSockets());
}

/// Process listers cut names to 8, 9 or 10 characters.
int32_t CountMailSystem() {
    return static_cast<int32_t>(ReadProcessInfo().Grep("/ tern\\.harb?o?r?$/").Count());
}

void TellWhatIsBusy(const SStringList& busy) {
    Print("\n\n");
    PrintParagraph(
        "tern.harbor replaces many services, some of which are currently active. Before you can start up "
        "tern.harbor, you will have to shutdown these servers. You have active servers for the following:");
    const SString separator = "\n" + kServiceIndent;
    Print(separator + busy.Join(separator) + "\n\n");
}

void OfferProcessTable() {
    PrintParagraph(
        "If you don't already know the names of the servers that have these ports open, they can be listed "
        "for you. Do you want to see a list of processes currently running on your system?");
    Print("\n");
    if (Ask("List running processes? yes/no ", "yes") != 'y') return;
    PrintParagraph("Here is a list of some of the processes currently running on your system:");
    Print("\n" + ProcessTable(ReadProcessInfo()));
}

SStringList AskWhichToKill() {
    PrintParagraph(
        "Please specify which processes need to be killed to free up the services noted above. To kill them, "
        "list them here separated by commas or spaces.");
    Print("\n");
    PrintParagraph("Press 'Return' if you don't want any processes killed.");
    Print("\nWhich processes? ");
    return GetInput("", 0).Split("[\\s,]+").Grep("/\\S/");
}

void LeaveServers(const SStringList& busy) {
    SStringList tasks;
    for (const SString& service : busy) tasks.Push("Shutdown server:    " + service);
    Remind(tasks);
    gf_ShowStoppers = 1;
    PrintParagraph("No processes killed.");
    Print("\n");
}

/// The super-server is not stopped: it reads its changed configuration again and lets go of the ports.
bool HangUpInetd() {
    if (KillProgram("inetd", SIGHUP)) {
        Print(kIndent + "Killed (with -HUP) inetd\n");
        return true;
    }
    Print(kIndent + "Couldn't 'kill -HUP [inetd-pid]'\n");
    gstrl_Reminders.Push("Kill -HUP [inetd-pid]");
    return false;
}

bool StopServer(const SString& name) {
    const SString shown = Printable(name, "\t");
    if (KillProgram(name, SIGTERM)) {
        Print(kIndent + "Killed " + shown + "\n");
        gstrl_Reminders.Push("Prevent boot startup of '" + shown + "'");
        return true;
    }
    Print(kIndent + "Couldn't kill " + shown + "\n");
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
    // A server lets go of its port in its own time, and the mail system is started next.
    if (reached) Await([] { return BusyNow().IsEmpty(); });
}

}  // namespace

bool KillServers() {
    Print("Checking for active server processes.... ");
    const SStringList busy = BusyNow();
    if (busy.IsEmpty()) {
        Print("none found (that's good)\n");
        return true;
    }
    gf_TernHarborIsRunning = CountMailSystem();
    if (gf_TernHarborIsRunning != 0) {
        Print("tern.harbor is running\n");
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
