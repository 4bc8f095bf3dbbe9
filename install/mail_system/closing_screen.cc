// The last screen: what is left to do or, if nothing is, how to administer the mail system.
#include "install/console.h"
#include "install/reminders.h"
#include "install/settings.h"
#include "install/steps.h"

namespace {

constexpr int kUsualPort = 80;

void PrintUnfinishedTasks() {
    Tell(
        {"The installation is complete but there are some tasks that you still need to do. If the system "
         "generated any warnings when it started up (or if you didn't start it), "
         "then you should perform the unfinished tasks, and re-run this installation program.",
         "The following tasks still need to be done:"});
    PrintReminders();
}

SString WebAddress() {
    return gn_WWWPort == kUsualPort ? gstr_HostName : gstr_HostName + ":" + SString(gn_WWWPort);
}

void PrintAdministration() {
    Tell({"Installation is complete.",
          "To administer tern.harbor using a World Wide Web browser such as NCSA Mosaic, use the URL:"});
    Print("          http://" + WebAddress() + "\n\n");
    PrintParagraph("To administer tern.harbor via E-mail, request account management forms from <Accounts@" +
                   gstr_HostName + "> and configuration forms from <Configuration@" + gstr_HostName +
                   ">. The body of the message should contain a list of the forms you want to retrieve. "
                   "Account management forms include the \"Account\", \"List\", and \"SMTP aliases\" forms. "
                   "Configuration forms include the \"System\", \"Security\", \"SMTP\", and \"Queue\" forms. "
                   "For a complete list and detailed instructions, "
                   "please refer to the tern.harbor documentation.");
}

}  // namespace

bool WarnAdmin() {
    Print("\n");
    if (gstrl_Reminders.IsEmpty()) {
        PrintAdministration();
    } else {
        PrintUnfinishedTasks();
    }
    Print("\n");
    return true;
}
