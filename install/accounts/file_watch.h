// Notices, by one look (stat), that a file has changed since the last one.
#pragma once

#include <sys/stat.h>

#include "support/text/sstring.h"

class FileWatch {
  public:
    explicit FileWatch(const SString& path) : path_(path) {}
    /// True at the first call, and when the file is not what it was at the last one. A file that is missing
    /// differs from one that is there, not from itself.
    bool HasChanged();

  private:
    SString path_;
    struct stat seen_ = {};
    bool has_looked_ = false;
};
