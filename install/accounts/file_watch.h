// Notices with one stat that a file has changed since the last call.
#pragma once

#include <sys/stat.h>

#include "support/text/sstring.h"

class FileWatch {
  public:
    explicit FileWatch(const SString& path) : path_(path) {}
    /// True at the first call, and if the file has changed since the last one. Appearing and disappearing are
    /// changes; still missing is none.
    bool HasChanged();

  private:
    SString path_;
    struct stat seen_ = {};
    bool has_looked_ = false;
};
