#include "install/mail_system/server_process.h"

#include <unistd.h>

#include <csignal>

#include "support/process/blocked_signals.h"
#include "support/process/child_process.h"
#include "support/system/descriptor.h"
#include "support/system/identity.h"

namespace {

constexpr int kCouldNotRun = 127;

/// exec keeps ignored signals and the mask: a server started under nohup could not be hung up.
void ResetSignals() {
    for (int number = 1; number <= SIGRTMAX; ++number) {
        signal(number, SIG_IGN);  // one that waits was meant for the installer
        signal(number, SIG_DFL);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

[[noreturn]] void Become(SStringList arguments) {
    // First, out of reach of the terminal before its signals count again; cannot fail, as a new process leads
    // no group.
    setsid();
    ResetSignals();
    KeepFromChildren();
    if (BecomeRootAsStarted()) execv(arguments[0].CString(), arguments.Pointers().data());
    _exit(kCouldNotRun);
}

}  // namespace

bool StartServer(SStringList arguments) {
    const BlockedSignals block(kTerminalSignals);  // until the child leads a session of its own
    return StartChild([&] { Become(std::move(arguments)); }) > 0;
}
