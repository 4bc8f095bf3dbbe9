#include "install/signals.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "install/settings.h"
#include "support/process/blocked_signals.h"

namespace {

constexpr int kEndedBySignal = 3;
constexpr char pz_PleaseWait[] = "\nPlease wait until I'm finished with this.\n\n";

}  // namespace

// Only what POSIX allows in a handler (signal-safety(7)): no stream, no exit, and errno as it was.
void SignalHandler(int /*signal*/) {
    if (gf_OkToBeKilled != 0) _exit(kEndedBySignal);
    const int error = errno;
    gf_Killed = 1;
    const ssize_t written = write(STDOUT_FILENO, pz_PleaseWait, sizeof(pz_PleaseWait) - 1);
    static_cast<void>(written);  // nothing to do about a failure here
    errno = error;
}

void SetupSignalHandler() {
    struct sigaction action = {};
    action.sa_handler = SignalHandler;
    action.sa_flags = SA_RESTART;
    sigfillset(&action.sa_mask);
    sigset_t ours;
    sigemptyset(&ours);
    for (const int signal : kTerminalSignals) {
        sigaction(signal, &action, nullptr);
        sigaddset(&ours, signal);
    }
    sigprocmask(SIG_UNBLOCK, &ours, nullptr);
}
