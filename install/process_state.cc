#include "install/process_state.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <csignal>

#include "support/system/descriptor.h"

namespace {

constexpr int kStopped = 2;

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

}  // namespace

void SettleProcess() {
    if (!OpenMissingDescriptors()) _exit(kStopped);
    MakeDescriptorsWait();
    SetSignalDefaults();
    LeaveRemovedDirectory();
}
