#include "answer/installer.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "support/process/child_process.h"
#include "support/text/sstring_list.h"

namespace {

constexpr int kCouldNotRun = 127;
constexpr int kSignalled = 128;

/// It unblocks the terminal's signals itself.
[[noreturn]] void Become(SStringList arguments, const Terminal& terminal) {
    signal(SIGPIPE, SIG_DFL);
    if (terminal.Become()) execv(arguments[0].CString(), arguments.Pointers().data());
    dprintf(STDERR_FILENO, "Answer: %s cannot be run: %s\n", arguments[0].CString(), std::strerror(errno));
    _exit(kCouldNotRun);
}

}  // namespace

Installer::Installer(const SString& program, const Terminal& terminal)
    : process_(StartChild([&] { Become(program, terminal); })) {}

// "0 0x0 ...": the number of the system call that it is blocked in, and its arguments (proc_pid_syscall(5),
// Linux).
std::optional<bool> Installer::IsReading() const {
    const SString path = "/proc/" + SString(process_) + "/syscall";
    const Descriptor file = Descriptor::Open(path, O_RDONLY);
    const auto call = file ? file.ReadAll() : std::nullopt;
    if (!call) return std::nullopt;
    return call->StartsWith((SString(SYS_read) + " 0x0 ").Bytes());
}

void Installer::Signal(int number) const {
    kill(process_, number);
}

std::optional<int> Installer::Ended() {
    int status = 0;
    if (waitpid(process_, &status, WNOHANG) != process_) return std::nullopt;
    return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
}
