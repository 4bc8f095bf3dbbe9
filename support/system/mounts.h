// What lies below which mount point, told without touching what is mounted there: a look at a path whose file
// server is gone would not come back.
#pragma once

#include <vector>

#include "support/text/sstring_list.h"

class Mounts {
  public:
    /// From lines as /proc/self/mountinfo has them (Linux, proc_pid_mountinfo(5)).
    explicit Mounts(const SStringList& lines);
    /// As they are now; where the system does not list them, everything lies below "/".
    static Mounts Now();

    /// The mount point that an absolute path lies below. As root; follows symbolic links, but only those on
    /// the root file system and on local disks.
    SString PointOf(const SString& path) const;

  private:
    struct Mount {
        SString point;
        bool is_local;  // a disk's file system: a look at it comes back
    };
    const Mount* At(const SString& point) const;
    SString WithoutLinks(const SString& path) const;

    std::vector<Mount> mounts_;
};
