#include "install/start_up.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <ctime>

#include "install/console.h"
#include "install/one_copy.h"
#include "install/sentences.h"
#include "install/settings.h"
#include "install/signals.h"
#include "install/site.h"
#include "install/steps.h"
#include "support/system/descriptor.h"
#include "support/system/identity.h"

namespace {

constexpr int kComplete = 0;
constexpr int kStopped = 2;
constexpr int kHeaderWidth = 75;

/// If another program left the terminal or pipe non-blocking, input would seem to have ended before an answer
/// is typed, and every default would be taken.
void MakeDescriptorsWait() {
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; fd++) {
        const int flags = fcntl(fd, F_GETFL);
        if (flags >= 0 && (flags & O_NONBLOCK) != 0) fcntl(fd, F_SETFL, flags & ~O_NONBLOCK);
    }
}

/// A full quota or a closed terminal must make the write fail, which a step can handle, and not kill the
/// program in the middle of a file. SIGCHLD: pclose needs the default.
void SetSignalDefaults() {
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_DFL);
}

/// In a working directory that was removed (by an upgrade, say) the shell of every probe would complain on
/// the screen.
void LeaveRemovedDirectory() {
    std::array<char, PATH_MAX> here{};
    if (getcwd(here.data(), here.size()) != nullptr) return;
    const int changed = chdir("/");
    static_cast<void>(changed);  // if refused, the complaints are the only harm
}

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
    if (!OpenMissingDescriptors()) _exit(kStopped);
    MakeDescriptorsWait();
    SetSignalDefaults();
    LeaveRemovedDirectory();
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
    return StartUp() && FullInstall() ? kComplete : kStopped;
}
