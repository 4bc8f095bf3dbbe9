#include "install/sequence.h"

#include <algorithm>

#include "install/console.h"
#include "install/steps.h"

namespace {

constexpr Step kSteps[] = {
    {"Initialize", Initialize},  // every later step reads these settings
    {"CreateMailboxDir", CreateMailboxDir},
    {"UpdateConfiguration", UpdateConfiguration},  // before any step opens a module's database
    {"FixMaildropDir", FixMaildropDir},
    {"SetupSpecialAccounts", SetupSpecialAccounts},
    {"AddUserAccounts", [] { return AddUserAccounts() != 0; }},
    {"SetupAdminAccount", SetupAdminAccount},  // offers the accounts made for the users
    {"ConfigureFeatures", ConfigureFeatures},
    {"EditInetdConf", EditInetdConf},  // inetd gives up its ports before their holders are looked for
    {"KillSendmail", KillSendmail},    // nothing may use the program that the next step replaces
    {"InstallSendmail", InstallSendmail},
    {"KillServers", KillServers},  // the last ports are free before the mail system takes them
    {"StartDaemon", StartDaemon},
    {"WarnAdmin", WarnAdmin},  // shows the reminders of all others
};

void Introduce() {
    Print("\n");
    Tell(
        "This installation program will occasionally ask you for permission to perform a task, or alert you "
        "of a problem. When asking a question that has a default response, you can simply press 'Return' to "
        "specify the default. The default is the value shown in the square brackets '[' and ']'.");
}

}  // namespace

std::span<const Step> Sequence() {
    return kSteps;
}

bool FullInstall() {
    Introduce();
    if (!AskToContinue()) return false;
    return std::ranges::all_of(kSteps, [](const Step& step) { return step.run(); });
}
