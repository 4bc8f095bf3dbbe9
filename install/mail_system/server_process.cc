#include "install/mail_system/server_process.h"

#include <unistd.h>

#include <csignal>

#include "support/system/descriptor.h"
#include "support/system/identity.h"

namespace {

constexpr int kTries = 5;
constexpr int kCouldNotRun = 127;

/// exec keeps ignored signals and the mask: a server started under nohup could not be hung up.
void ResetSignals() {
    for (int number = 1; number <= SIGRTMAX; ++number) signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

[[noreturn]] void Become(SStringList arguments) {
    ResetSignals();
    setsid();  // out of reach of the installer's terminal; cannot fail, as a new process leads no group
    KeepFromChildren();
    if (BecomeRootAsStarted()) execv(arguments[0].CString(), arguments.Pointers().data());
    _exit(kCouldNotRun);  // not exit: the parent's buffers are not the child's to flush
}

}  // namespace

bool StartServer(SStringList arguments) {
    for (unsigned wait = 1; wait <= kTries; ++wait) {
        const pid_t child = fork();
        if (child == 0) Become(std::move(arguments));
        if (child > 0) return true;
        sleep(wait);
    }
    return false;
}
