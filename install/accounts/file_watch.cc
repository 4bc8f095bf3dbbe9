// Compares a file's status with the one seen before.
#include "install/accounts/file_watch.h"

#include "support/system/regular_file.h"

namespace {

bool SameTime(const timespec& left, const timespec& right) {
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

bool IsUnchanged(const struct stat& left, const struct stat& right) {
    return IsSameFile(left, right) && left.st_size == right.st_size &&
           SameTime(left.st_mtim, right.st_mtim) && SameTime(left.st_ctim, right.st_ctim);
}

}  // namespace

bool FileWatch::HasChanged() {
    struct stat now = {};
    if (stat(path_.CString(), &now) != 0) now = {};
    bool changed = !has_looked_ || !IsUnchanged(now, seen_);
    has_looked_ = true;
    seen_ = now;
    return changed;
}
