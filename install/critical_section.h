// A stretch of work that a termination signal must not cut short: inside it a signal is only noted.
#pragma once

#include <utility>

#include "install/settings.h"

/// Sections nest: only the end of the outermost lets a signal end the program again.
class CriticalSection {
  public:
    CriticalSection() : before_(gf_OkToBeKilled) { gf_OkToBeKilled = 0; }
    ~CriticalSection() { gf_OkToBeKilled = before_; }
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;
    static bool WasInterrupted() { return gf_Killed != 0; }

  private:
    std::sig_atomic_t before_;
};

/// Runs the work in a critical section and returns its result.
template <typename Work>
auto Uninterrupted(Work&& work) {
    const CriticalSection section;
    return std::forward<Work>(work)();
}
