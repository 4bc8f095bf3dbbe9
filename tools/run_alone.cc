// run_alone COMMAND [ARGUMENT...]
//
// For postinst: runs the command while no Install runs, and lets none start meanwhile. The exit status is the
// command's; 1, with the command not run, while an Install is running.
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <optional>

#include "install/console.h"
#include "install/one_copy.h"
#include "support/process/blocked_signals.h"
#include "support/process/child_process.h"

namespace {

constexpr int kRefused = 1;
constexpr int kMisused = 64;
constexpr int kCouldNotRun = 127;
constexpr int kSignalled = 128;

int Refuse(const SString& reason) {
    std::cerr << Format(reason, 75, 0, "\n") << "To finish the upgrade then: dpkg --configure -a\n";
    return kRefused;
}

/// Not exec alone: the command's own children, some of them the mail owner's, would inherit the lock's file.
int Run(char** arguments) {
    // The lock must outlast the command, which Ctrl-C reaches, too.
    std::optional<BlockedSignals> block(std::in_place, kTerminalSignals);
    const pid_t child = StartChild([&] {
        block.reset();
        execv(arguments[0], arguments);
        _exit(kCouldNotRun);
    });
    for (const int number : kTerminalSignals) std::signal(number, SIG_IGN);
    block.reset();
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) return kCouldNotRun;
    return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return kMisused;
    const auto other = AnotherCopy();
    return other ? Refuse(*other) : Run(argv + 1);
}
