#include "install/signals.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "install/critical_section.h"

namespace {

constexpr int kSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

/// Sends the signal in a critical section; the status tells what is left to do after it.
[[noreturn]] void InterruptCriticalSection(int signal, int times) {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    SetupSignalHandler();
    const CriticalSection section;
    errno = ENOSPC;
    for (int i = 0; i < times; i++) raise(signal);
    _exit(CriticalSection::WasInterrupted() && errno == ENOSPC ? 77 : 1);
}

TEST(SignalHandler, EndsTheProgramAtOnce) {
    for (const int signal : kSignals) {
        EXPECT_EXIT(SetupSignalHandler(); raise(signal), testing::ExitedWithCode(3), "^$") << signal;
    }
}

TEST(SignalHandler, OnlyTakesNoteInACriticalSection) {
    const char* const text = "^\nPlease wait until I'm finished with this.\n\n$";
    for (const int signal : kSignals) {
        EXPECT_EXIT(InterruptCriticalSection(signal, 1), testing::ExitedWithCode(77), text) << signal;
    }
}

TEST(SignalHandler, AsksForPatienceOnceASignal) {
    const char* const text =
        "^\nPlease wait until I'm finished with this.\n\n\nPlease wait until I'm finished with this.\n\n$";
    EXPECT_EXIT(InterruptCriticalSection(SIGINT, 2), testing::ExitedWithCode(77), text);
}

TEST(SignalHandler, EndsTheProgramAgainAfterACriticalSection) {
    const auto run = [] {
        SetupSignalHandler();
        { const CriticalSection section; }
        raise(SIGTERM);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(3), "");
}

TEST(SetupSignalHandler, UnblocksWhatTheParentBlocked) {
    const auto run = [] {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_BLOCK, &all, nullptr);
        raise(SIGHUP);
        SetupSignalHandler();
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(3), "");
}

TEST(SetupSignalHandler, BlocksAllInTheHandlerAndRestartsCalls) {
    const auto run = [] {
        SetupSignalHandler();
        bool is_set = true;
        for (const int signal : kSignals) {
            struct sigaction action = {};
            sigaction(signal, nullptr, &action);
            is_set = is_set && action.sa_handler == SignalHandler && (action.sa_flags & SA_RESTART) != 0 &&
                     sigismember(&action.sa_mask, SIGUSR1) == 1;
        }
        _exit(is_set ? 77 : 1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(77), "");
}

}  // namespace
