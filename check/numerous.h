// What a host may have many of: a report names the first twenty and counts the rest.
#pragma once

#include "check/findings.h"

/// Problems of one kind.
class Numerous {
  public:
    Numerous(const SString& about, Findings* findings) : about_(about), findings_(findings) {}
    void Problem(const SString& text, const SStringList& to_do, const SStringList& answers = {});
    /// Counts those that were not named, or says that there was none.
    void End(const SString& none) const;

  private:
    SString about_;
    Findings* findings_;
    size_t count_ = 0;
};
