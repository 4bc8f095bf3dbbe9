// A stretch of work that a termination signal must not cut short: inside it a signal is only noted.
#pragma once

#include "install/settings.h"

class CriticalSection {
  public:
    CriticalSection() { gf_OkToBeKilled = 0; }
    ~CriticalSection() { gf_OkToBeKilled = 1; }
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;
    static bool WasInterrupted() { return gf_Killed != 0; }
};
