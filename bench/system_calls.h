// Counts system calls with the kernel's tracepoint (perf_event_open(2)), which hardly slows them.
#pragma once

#include <optional>

#include "support/system/descriptor.h"

/// Those of this process and of the children that it starts, from the construction on. Needs root's rights.
class SystemCalls {
  public:
    SystemCalls();
    /// Nothing where the system does not count them.
    std::optional<double> Count() const;

    /// Makes the tracepoints visible to this process and its children. Call it once, as root.
    static void Prepare();

  private:
    Descriptor event_;
};
