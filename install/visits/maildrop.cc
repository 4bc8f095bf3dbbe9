// Gives a maildrop file to its user and the mail group.
#include "install/visits/maildrop.h"

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "install/record/access.h"
#include "install/record/record.h"
#include "support/system/pending_file.h"
#include "support/system/regular_file.h"

namespace {

constexpr uid_t kRoot = 0;

struct Owner {
    uid_t uid;
    gid_t gid;
};

bool IsOwnedBy(const struct stat& status, const Owner& owner) {
    return status.st_uid == owner.uid && status.st_gid == owner.gid;
}

/// The mode goes last: taking the list off changes the group's rights.
bool Give(const Descriptor& file, const Owner& owner) {
    if (fchown(file.Get(), owner.uid, owner.gid) != 0) return false;
    // Fails where there is no list, too.
    static_cast<void>(fremovexattr(file.Get(), kAccessListAttribute));
    return fchmod(file.Get(), kMaildropMode) == 0;
}

/// Of one that cannot be opened, the access list stays unknown.
void Record(const SString& path, const Descriptor& file, const struct stat& seen, const Owner& owner,
            bool is_replaced) {
    if (!IsRecording()) return;
    const change::Access unopened{seen.st_uid, seen.st_gid, {seen.st_mode & 07777}, ""};
    const change::Access before = AccessOf(file).value_or(unopened);
    RecordWithoutSync(
        change::MaildropGiven{path, before, owner.uid, owner.gid, is_replaced, is_replaced ? getpid() : 0});
}

/// Opened for writing, if it is the very file that was seen.
RegularFile OpenPlain(const SString& path, const struct stat& seen) {
    RegularFile file = OpenRegularFile(path, O_WRONLY, Links::NotAtEnd);
    const bool is_same = file && IsSameFile(file.status, seen) && IsPlainMaildrop(file.status);
    return is_same ? std::move(file) : RegularFile();
}

/// A delivery that is under way has a moment to end; whoever made the file could keep the lock for good.
void AwaitDelivery(const Descriptor& file) {
    constexpr int kTries = 10;
    constexpr useconds_t kPause = 10000;
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    for (int i = 0; i < kTries && fcntl(file.Get(), F_OFD_SETLK, &lock) != 0; ++i) usleep(kPause);
}

/// Opens it for the lock only: its maker could refuse to let it be opened (a lease, fcntl(2)). Until it is
/// the user's the new file is open to nobody else, whatever this process's group.
bool ReplaceEmpty(const SString& path, const struct stat& seen, const Owner& owner) {
    const RegularFile old = OpenPlain(path, seen);
    if (old) AwaitDelivery(old.descriptor);
    Record(path, old.descriptor, seen, owner, true);
    PendingFile file(path, kMaildropModeUntilGiven);
    return file.Replace(seen) && Give(file.File(), owner);
}

void Repair(const SString& path, const struct stat& seen, const Owner& owner) {
    if (IsAnothersMaildrop(seen, owner.uid) && seen.st_size == 0 && ReplaceEmpty(path, seen, owner)) return;
    const RegularFile file = OpenPlain(path, seen);
    if (!file) return;
    const bool is_right = IsOwnedBy(file.status, owner) && (file.status.st_mode & 07777) == kMaildropMode;
    if (is_right) return;
    Record(path, file.descriptor, file.status, owner, false);
    Give(file.descriptor, owner);
}

}  // namespace

bool IsPlainMaildrop(const struct stat& status) {
    return S_ISREG(status.st_mode) && status.st_nlink == 1;
}

bool IsAnothersMaildrop(const struct stat& status, uid_t user) {
    return status.st_uid != user && status.st_uid != kRoot;
}

Maildrop RepairMaildrop(const SString& path, const Identity& user, gid_t mail_group) {
    struct stat seen = {};
    if (lstat(path.CString(), &seen) != 0) return Maildrop::Fine;
    if (!IsPlainMaildrop(seen)) return Maildrop::Suspicious;
    if (user.IsSomebody()) Repair(path, seen, {user.uid, mail_group});
    return Maildrop::Fine;
}
