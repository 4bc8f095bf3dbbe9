// Gives a maildrop file to its user and the mail group.
#include "install/accounts/maildrop.h"

#include <fcntl.h>
#include <unistd.h>

#include "support/system/descriptor.h"

namespace {

constexpr mode_t kMode = 0660;

bool IsPlain(const struct stat& status) {
    return S_ISREG(status.st_mode) && status.st_nlink == 1;
}

void GiveTo(const Identity& user, gid_t mail_group, const Descriptor& file, const struct stat& status) {
    bool is_owned = status.st_uid == user.uid && status.st_gid == mail_group;
    if (!is_owned && fchown(file.Get(), user.uid, mail_group) != 0) return;
    if ((status.st_mode & 07777) != kMode) static_cast<void>(fchmod(file.Get(), kMode));
}

}  // namespace

Maildrop RepairMaildrop(const SString& path, const Identity& user, gid_t mail_group) {
    AsRoot root;
    struct stat seen = {};
    if (lstat(path.CString(), &seen) != 0) return Maildrop::Fine;
    if (!IsPlain(seen)) return Maildrop::Suspicious;
    Descriptor file = Descriptor::Open(path, O_WRONLY | O_NOFOLLOW | O_NONBLOCK);
    auto opened = file.Stat();
    bool is_same = opened && opened->st_dev == seen.st_dev && opened->st_ino == seen.st_ino;
    if (is_same && IsPlain(*opened) && user.IsSomebody()) GiveTo(user, mail_group, file, *opened);
    return Maildrop::Fine;
}
