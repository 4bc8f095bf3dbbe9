#include "install/start_up.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>

#include "install/console.h"
#include "install/one_copy.h"
#include "install/process_state.h"
#include "install/record/record.h"
#include "install/sentences.h"
#include "install/settings.h"
#include "install/signals.h"
#include "install/site.h"
#include "install/steps.h"
#include "support/system/identity.h"

namespace {

constexpr int kComplete = 0;
constexpr int kStopped = 2;
constexpr int kHeaderWidth = 75;

bool IsStartedByRoot() {
    if (getuid() == 0) return true;
    PrintParagraph("You must be root to run the installation program.");
    return false;
}

bool IsOnlyCopy() {
    const auto other = AnotherCopy();
    if (other) PrintParagraph(*other);
    return !other;
}

void SeedRandom() {
    const auto now = static_cast<unsigned>(std::time(nullptr));
    std::srand(now + static_cast<unsigned>(getpid()) + static_cast<unsigned>(getppid()));
}

bool LowerPrivileges() {
    const auto uid = static_cast<uid_t>(gn_MailUID);
    const auto gid = static_cast<gid_t>(gn_MailGID);
    if (BecomeMailOwner(gstr_MailOwner, uid, gid)) return true;
    PrintParagraph("Couldn't take on the user and group ID of the owner of the mail system (" +
                   gstr_MailOwner + "). " + SupportLine());
    return false;
}

}  // namespace

bool StartUp() {
    SettleProcess();
    RememberGroups();
    if (!IsStartedByRoot() || !IsOnlyCopy()) return false;
    umask(007);
    SetupSignalHandler();
    ClearScreen();
    PrintHeader(kHeaderWidth, gstr_ContactAddress);
    SeedRandom();
    return DetermineSite() && LowerPrivileges();
}

int Main() {
    const int status = StartUp() && FullInstall() ? kComplete : kStopped;
    EndRecord(status);
    return status;
}
