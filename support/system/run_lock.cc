// Takes the lock, or finds out who has it.
#include "support/system/run_lock.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace {

constexpr mode_t kMode = 0600;  // whoever can open the file can hold a lock on it

/// Nothing where the file isn't the user's own: its owner could keep every run out.
Descriptor OpenOwn(const SString& path) {
    Descriptor file = Descriptor::Open(path, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK, kMode);
    const auto status = file.Stat();
    const bool is_own =
        status && S_ISREG(status->st_mode) && status->st_uid == geteuid() && fchmod(file.Get(), kMode) == 0;
    return is_own ? std::move(file) : Descriptor();
}

struct flock OfWholeFile() {
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

bool IsHeldElsewhere(int error) {
    return error == EAGAIN || error == EACCES;
}

}  // namespace

RunLock::RunLock(const SString& path) : file_(OpenOwn(path)) {
    while (file_) {
        struct flock lock = OfWholeFile();
        if (fcntl(file_.Get(), F_SETLK, &lock) == 0 || !IsHeldElsewhere(errno)) return;
        if (fcntl(file_.Get(), F_GETLK, &lock) != 0) return;
        // The holder may have ended in between; the lock is free then.
        if (lock.l_type != F_UNLCK) {
            other_ = lock.l_pid;
            return;
        }
    }
}

std::optional<pid_t> RunLock::Holder(const SString& path) {
    const Descriptor file = Descriptor::Open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    struct flock lock = OfWholeFile();
    if (!file || fcntl(file.Get(), F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return std::nullopt;
    return lock.l_pid;
}
