#include "undo/mail_system/notice_removal.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "install/visits/forward_notice.h"
#include "support/system/regular_file.h"

namespace {

const SString kName = ".forward.NOTICE";
constexpr size_t kMostBytes = size_t{16} << 10;
constexpr int64_t kSlack = 1;  // the clock's steps

/// The same for many homes.
const ForwardNotice& NoticeOf(const SString& host) {
    static std::optional<ForwardNotice> notice;
    static SString host_of_notice;
    if (!notice || host != host_of_notice) {
        notice.emplace(host);
        host_of_notice = host;
    }
    return *notice;
}

bool IsOwn(const struct stat& status, const Identity& user) {
    return S_ISREG(status.st_mode) && status.st_nlink == 1 && status.st_uid == user.uid;
}

/// What stands under the notice's name, which is not a link.
UsersOutcome Judge(const Descriptor& home, const struct stat& seen, const Identity& user,
                   const NoticeOfRun& notice) {
    const bool is_older = seen.st_ctim.tv_sec < notice.begun - kSlack;
    const UsersOutcome others = is_older ? UsersOutcome::Nothing : UsersOutcome::Changed;
    if (!IsOwn(seen, user)) return others;
    if (seen.st_size == 0) return is_older ? UsersOutcome::Nothing : UsersOutcome::Back;
    const RegularFile file = OpenRegularFile(kName, O_RDONLY | O_NOATIME, Links::NotAtEnd, home.Get());
    // As long as it was when it was opened: to find its end would take another call.
    const size_t size = std::min(static_cast<size_t>(file.status.st_size), kMostBytes);
    const auto text = file && IsSameFile(file.status, seen) ? file.descriptor.ReadAll(size) : std::nullopt;
    const auto date = text ? NoticeOf(notice.host).DateOf(*text) : std::nullopt;
    if (!date) return others;
    return *date >= notice.begun - kSlack && *date <= notice.next ? UsersOutcome::Back
                                                                  : UsersOutcome::Nothing;
}

/// Nor was it one for Install, which records homes before it looks at them. Other failures may pass, as those
/// of a server do.
bool IsNoHome() {
    return errno == ENOENT || errno == ENOTDIR || errno == EACCES || errno == ELOOP;
}

}  // namespace

UsersOutcome RemoveNotice(const SString& path, const Identity& user, const NoticeOfRun& notice,
                          ManyUsers* users, VisitProgress* progress) {
    progress->LookAt(path);
    if (path[0] != '/' || !user.IsSomebody()) return UsersOutcome::Nothing;
    const AsUser identity(users, user);
    if (!identity.IsTaken()) return UsersOutcome::Failed;
    const Descriptor home = OpenDirectory(path);
    struct stat seen {};
    if (!home || fstatat(home.Get(), kName.CString(), &seen, AT_SYMLINK_NOFOLLOW) != 0)
        return IsNoHome() ? UsersOutcome::Nothing : UsersOutcome::Failed;
    const UsersOutcome outcome = Judge(home, seen, user, notice);
    if (outcome != UsersOutcome::Back) return outcome;
    return unlinkat(home.Get(), kName.CString(), 0) == 0 || errno == ENOENT ? outcome : UsersOutcome::Failed;
}
