#include "support/system/regular_file.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

namespace {

/// Kernels before 5.6, and containers that refuse the call, get the other flags instead.
Descriptor OpenWithoutMagicLinks(int directory, const SString& path, int flags, int flags_instead) {
    struct open_how how = {};
    how.flags = static_cast<uint64_t>(flags) | O_CLOEXEC;
    how.resolve = RESOLVE_NO_MAGICLINKS;
    const long fd = syscall(SYS_openat2, directory, path.CString(), &how, sizeof how);
    if (fd >= 0) return Descriptor(static_cast<int>(fd));
    const bool is_unknown = errno == ENOSYS || errno == EPERM;
    return is_unknown ? Descriptor::OpenAt(directory, path, flags_instead) : Descriptor();
}

}  // namespace

RegularFile OpenRegularFile(const SString& path, int flags, Links links, int directory) {
    flags |= O_NONBLOCK | O_NOCTTY;
    RegularFile file;
    if (links == Links::NotAtEnd) flags |= O_NOFOLLOW;
    file.descriptor = links == Links::NotMagic
                          ? OpenWithoutMagicLinks(directory, path, flags, flags | O_NOFOLLOW)
                          : Descriptor::OpenAt(directory, path, flags);
    const auto status = file.descriptor.Stat();
    if (!status || !S_ISREG(status->st_mode)) return {};
    file.status = *status;
    return file;
}

Descriptor OpenDirectory(const SString& path) {
    constexpr int kFlags = O_PATH | O_DIRECTORY;
    return OpenWithoutMagicLinks(AT_FDCWD, path, kFlags, kFlags);
}

bool IsSameFile(const struct stat& left, const struct stat& right) {
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}
