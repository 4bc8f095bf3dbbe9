// Holds back signals for a stretch of work that one must not cut short.
#pragma once

#include <array>
#include <csignal>
#include <span>

/// What a terminal and an administrator end programs with.
inline constexpr std::array kTerminalSignals = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

/// What came meanwhile is delivered at the scope's end. Scopes nest.
class BlockedSignals {
  public:
    /// Every signal that can be held back.
    BlockedSignals() {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_BLOCK, &all, &before_);
    }
    /// A child that is started in the scope inherits that they are blocked.
    explicit BlockedSignals(std::span<const int> numbers) {
        sigset_t signals;
        sigemptyset(&signals);
        for (const int number : numbers) sigaddset(&signals, number);
        sigprocmask(SIG_BLOCK, &signals, &before_);
    }
    ~BlockedSignals() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

  private:
    sigset_t before_{};
};
