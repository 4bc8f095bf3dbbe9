#include "undo/host/unreached.h"

#include <cerrno>
#include <cstring>

bool IsGone() {
    return errno == ENOENT || errno == ENOTDIR;
}

Finding Unreached(const SString& path) {
    if (errno == ELOOP)
        return {Standing::Unknown, "On the way to " + path + " is a link that others could change"};
    if (IsGone()) return {Standing::Changed, path + " is gone"};
    return {Standing::Unknown, path + " cannot be looked at: " + strerror(errno)};
}
