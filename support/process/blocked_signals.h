// Holds back signals for a stretch of work that one must not cut short.
#pragma once

#include <csignal>
#include <initializer_list>

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
    BlockedSignals(std::initializer_list<int> numbers) {
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
