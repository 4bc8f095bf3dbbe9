// Starts the mail system's server, or tells it to reread its configuration if it runs.
#include <unistd.h>

#include <csignal>

#include "install/console.h"
#include "install/mail_system/server_process.h"
#include "install/record/record.h"
#include "install/record/signalled.h"
#include "install/reminders.h"
#include "install/settings.h"
#include "install/site.h"
#include "install/steps.h"

namespace {

constexpr unsigned kSecondsToSpeak = 4;

bool StartAnyway() {
    Print("\n");
    Tell(
        {"Before starting tern.harbor, you should take care of the problems that were noted earlier in the "
         "installation procedure. If you don't, the system may not function properly.",
         "The unresolved items are:"});
    PrintReminders();
    return Ask(QuestionId::StartAnyway) == 'y';
}

}  // namespace

bool StartDaemon() {
    if (gf_TernHarborIsRunning != 0) {
        KillRecordedOf(MailSystemUsers(), gstr_ProductName, SIGHUP);
        return true;
    }
    if (gf_ShowStoppers != 0 && !StartAnyway()) return false;
    Tell({"Starting tern.harbor....", "If there is a problem, error messages will show up now."});
    const SString program = gstr_ProgramDir + gstr_ProductName;
    RecordChange(change::ServerStarted{program});
    if (!StartServer(program)) {
        PrintParagraph(
            "ERROR: Couldn't create a new process with the fork(2) system call. "
            "Try again when the system is less loaded.");
        return false;
    }
    // Lets the server print its start-up messages first.
    sleep(kSecondsToSpeak);
    Print("\n");
    return true;
}
