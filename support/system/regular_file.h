// Opening what somebody else may have put there: files without waiting on a FIFO, and only regular ones.
#pragma once

#include <fcntl.h>

#include "support/system/descriptor.h"

/// Which links on the way to a file are followed.
enum class Links {
    All,
    NotAtEnd,  // not where the path's last component is one
    NotMagic,  // all but those of /proc, which lead past the rights of directories (Linux)
};

struct RegularFile {
    Descriptor descriptor;  // none where no regular file could be opened
    struct stat status {};

    explicit operator bool() const { return static_cast<bool>(descriptor); }
};

/// Opens for reading (O_RDONLY) or writing (O_WRONLY), and makes and truncates nothing. A path that is not
/// absolute begins at the directory.
RegularFile OpenRegularFile(const SString& path, int flags, Links links, int directory = AT_FDCWD);

/// Opens a directory to look at what is in it, with Links::NotMagic where the kernel can. It need not be
/// readable.
Descriptor OpenDirectory(const SString& path);

/// Whether both are the same file (device and inode).
bool IsSameFile(const struct stat& left, const struct stat& right);
