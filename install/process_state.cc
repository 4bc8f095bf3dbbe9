#include "install/process_state.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <csignal>

namespace {

constexpr int kStopped = 2;

/// If the process was started without standard descriptors, the next file opened would get one of their
/// numbers and receive what is meant for the screen.
void OpenMissingDescriptors() {
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; fd++) {
        const bool is_missing = fcntl(fd, F_GETFD) < 0;
        if (is_missing && open("/dev/null", O_RDWR | O_NOCTTY) < 0) _exit(kStopped);
    }
}

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
    OpenMissingDescriptors();
    MakeDescriptorsWait();
    SetSignalDefaults();
    LeaveRemovedDirectory();
}
