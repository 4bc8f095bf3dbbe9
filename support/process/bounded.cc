// Runs work in a child with a process group of its own, which takes what the work has started along.
#include "support/process/bounded.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "support/process/blocked_signals.h"
#include "support/process/child_process.h"
#include "support/process/message_socket.h"

namespace {

constexpr std::chrono::milliseconds kForever{-1};
constexpr std::chrono::milliseconds kNap{100};

using Clock = std::chrono::steady_clock;

void Answer(MessageSocket* socket, const std::function<SStringList()>& work) {
    setpgid(0, 0);
    KeepOnly(socket->Socket());
    socket->Queue(work());
    while (socket->HasQueued() && socket->Transfer(kForever)) {
    }
}

bool IsIgnored(int number) {
    struct sigaction action {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

/// Whether one will come when the scope that holds them back is left. An ignored one is pending, too, till
/// then.
bool HasSignal() {
    sigset_t pending;
    sigpending(&pending);
    return std::ranges::any_of(kTerminalSignals, [&](int number) {
        return sigismember(&pending, number) == 1 && !IsIgnored(number);
    });
}

std::optional<SStringList> Await(MessageSocket* socket, Clock::time_point end) {
    while (true) {
        if (auto result = socket->Next()) return result;
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        if (left.count() <= 0 || HasSignal()) return std::nullopt;
        if (!socket->Transfer(std::min(left, kNap))) return socket->Next();
    }
}

/// Does not wait for one that the kernel cannot end now.
void End(pid_t child, bool has_answered) {
    kill(-child, SIGKILL);
    kill(child, SIGKILL);  // before it made its group
    waitpid(child, nullptr, has_answered ? 0 : WNOHANG);
}

}  // namespace

std::optional<SStringList> ResultWithin(std::chrono::milliseconds patience,
                                        const std::function<SStringList()>& work) {
    auto sockets = MessageSocket::Pair();
    if (!sockets) return std::nullopt;
    const BlockedSignals block(kTerminalSignals);  // the child ends first
    const auto end = Clock::now() + patience;
    const pid_t child = StartChild([&] { Answer(&sockets->second, work); });
    if (child < 0) return std::nullopt;
    sockets->second = MessageSocket();  // or the child's end would not be noticed
    auto result = Await(&sockets->first, end);
    End(child, result.has_value());
    return result;
}
