// One run at a time on a host: a record lock (fcntl(2)) on a file that is there for nothing else.
//
// The lock is the process's own and ends with it, however it ends: children don't inherit it, so one that
// hangs keeps nobody out. It would be lost with any descriptor of the file that the process closes: nothing
// else may open the file.
#pragma once

#include <sys/types.h>

#include <optional>

#include "support/system/descriptor.h"

class RunLock {
  public:
    /// Takes the lock, and makes the file, mode 0600, where there is none. Where no lock can be had (there is
    /// no such directory, or the file is a link or another user's), none is taken and no other run is seen.
    explicit RunLock(const SString& path);

    /// The process that has the lock already; 0 for one in a container, whose id has no meaning here.
    std::optional<pid_t> Other() const { return other_; }

    /// The process that has the lock, from outside: nothing is taken or made. Not to be called by a process
    /// that may have it itself.
    static std::optional<pid_t> Holder(const SString& path);

  private:
    Descriptor file_;
    std::optional<pid_t> other_;
};
