// Gives a maildrop file to its user and the mail group.
#include "install/accounts/maildrop.h"

#include <fcntl.h>
#include <unistd.h>

#include "support/system/regular_file.h"

namespace {

constexpr mode_t kMode = 0660;

bool IsPlain(const struct stat& status) {
    return S_ISREG(status.st_mode) && status.st_nlink == 1;
}

void GiveTo(const Identity& user, gid_t mail_group, const RegularFile& file) {
    const int fd = file.descriptor.Get();
    const bool is_owned = file.status.st_uid == user.uid && file.status.st_gid == mail_group;
    if (!is_owned && fchown(fd, user.uid, mail_group) != 0) return;
    if ((file.status.st_mode & 07777) != kMode) static_cast<void>(fchmod(fd, kMode));
}

}  // namespace

Maildrop RepairMaildrop(const SString& path, const Identity& user, gid_t mail_group) {
    AsRoot root;
    struct stat seen = {};
    if (lstat(path.CString(), &seen) != 0) return Maildrop::Fine;
    if (!IsPlain(seen)) return Maildrop::Suspicious;
    const RegularFile file = OpenRegularFile(path, O_WRONLY, Links::NotAtEnd);
    const bool is_same = file && IsSameFile(file.status, seen) && IsPlain(file.status);
    if (is_same && user.IsSomebody()) GiveTo(user, mail_group, file);
    return Maildrop::Fine;
}
