#include "install/site_faults.h"

#include "install/console.h"
#include "install/sentences.h"
#include "install/settings.h"

namespace {

/// The problem and what to do about it.
void TellProblem(const SString& problem, const SString& advice) {
    Tell(problem);
    PrintParagraph(advice);
}

void TellNoConfiguration() {
    TellProblem("The system configuration file (" + gstr_ConfigFile +
                    ") doesn't exist. This file should have been created by the package installation program "
                    "(pkgadd). If you haven't run pkgadd, you must do that before running this program.",
                "If you have run pkgadd then there is a problem. " + SupportLine());
}

void TellNoAddress() {
    TellProblem("Couldn't determine the IP address of " + gstr_HostName +
                    " using the gethostbyname function. If your domain name is incorrect, correct it in " +
                    gstr_ConfigFile + ".",
                SupportLine());
}

void TellIncomplete() {
    TellProblem("The configuration file (" + gstr_ConfigFile +
                    ") is missing information necessary for correct operation of the mail system. It should "
                    "have been set up by the package installation program (pkgadd).",
                SupportLine());
}

void TellNoOwner() {
    TellProblem("The user ID specified as the owner of the mail system (" + gstr_MailOwner +
                    ") is not in the password database. Please create the user and run this program again.",
                "If the user is already in the password database then there is a problem. " + SupportLine());
}

void TellNoGroup() {
    TellProblem("The group ID specified as the primary group of the mail system (" +
                    SString(static_cast<gid_t>(gn_MailGID)) +
                    ") is not in the group database. Please create the group and run this program again.",
                "If the group is already in the database then there is a problem. " + SupportLine());
}

}  // namespace

void TellFault(SiteFault fault) {
    switch (fault) {
        case SiteFault::NoConfiguration:
            return TellNoConfiguration();
        case SiteFault::Unreadable:
            return PrintParagraph("Couldn't open " + gstr_ConfigFile + ". " + SupportLine());
        case SiteFault::NoHostName:
            return PrintParagraph(
                "Couldn't determine your system's hostname using the uname(2) system call. " + SupportLine());
        case SiteFault::NoAddress:
            return TellNoAddress();
        case SiteFault::Incomplete:
            return TellIncomplete();
        case SiteFault::NoOwner:
            return TellNoOwner();
        case SiteFault::NoGroup:
            return TellNoGroup();
    }
}
