// Changes the effective user and groups, and gives them back.
#include "support/system/identity.h"

#include <grp.h>
#include <linux/capability.h>
#include <pwd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace {

std::optional<std::vector<gid_t>> CurrentGroups() {
    const int count = getgroups(0, nullptr);
    if (count < 0) return std::nullopt;
    std::vector<gid_t> groups(static_cast<size_t>(count));
    if (getgroups(count, groups.data()) != count) return std::nullopt;
    return groups;
}

std::optional<std::vector<gid_t>>& GroupsAtStart() {
    static std::optional<std::vector<gid_t>> groups;
    return groups;
}

/// The caller may have set SECBIT_NO_SETUID_FIXUP, with which a process without root's id keeps root's
/// rights.
bool HasNoCapabilities() {
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets = {};
    if (syscall(SYS_capget, &header, sets.data()) != 0) return false;
    return std::ranges::all_of(sets, [](const auto& set) { return set.effective == 0; });
}

/// No core file, which abort would leave: it would hold passwords.
[[noreturn]] void EndAsRoot() {
    constexpr int kStopped = 2;
    constexpr std::string_view kText = "Install: root's rights could not be given up; ended.\n";
    const ssize_t written = write(STDERR_FILENO, kText.data(), kText.size());
    static_cast<void>(written);  // nothing to do about a failure here
    _exit(kStopped);
}

}  // namespace

bool BecomeMailOwner(const SString& login, uid_t uid, gid_t gid) {
    return initgroups(login.CString(), gid) == 0 && setegid(gid) == 0 && seteuid(uid) == 0 &&
           HasNoCapabilities();
}

AsRoot::AsRoot() : AsRoot(geteuid()) {}

AsRoot::AsRoot(uid_t after) : after_(after) {
    if (geteuid() == getuid()) return;
    // If refused, whatever needs root's rights fails and is reported there.
    [[maybe_unused]] const int refused = seteuid(getuid());
}

AsRoot::~AsRoot() {
    // Better to end than to go on as root.
    if (after_ != geteuid() && seteuid(after_) != 0) EndAsRoot();
}

ManyUsers::ManyUsers() : root_(getuid()), now_{geteuid(), getegid(), {}} {
    const auto groups = CurrentGroups();
    if (!groups) return;
    now_.groups = *groups;
    before_ = now_;
}

ManyUsers::~ManyUsers() {
    if (before_ && !Change(*before_)) EndAsRoot();
}

bool ManyUsers::Take(const Identity& user) {
    if (!before_) return false;
    const Identity last = now_;
    const bool is_taken = Change(user);
    if (!is_taken && !Change(last)) EndAsRoot();
    return is_taken;
}

void ManyUsers::Leave() {
    if (before_ && !ChangeUser(root_)) EndAsRoot();
}

/// The user goes last: setting groups needs root's rights.
bool ManyUsers::Change(const Identity& to) {
    if (to.groups != now_.groups || to.gid != now_.gid) {
        if (!ChangeUser(root_) || setgroups(to.groups.size(), to.groups.data()) != 0) return false;
        now_.groups = to.groups;
        if (setegid(to.gid) != 0) return false;
        now_.gid = to.gid;
    }
    return ChangeUser(to.uid);
}

bool ManyUsers::ChangeUser(uid_t uid) {
    if (now_.uid == uid) return true;
    // From one user to another only root may change.
    if (now_.uid != root_ && uid != root_ && !ChangeUser(root_)) return false;
    if (seteuid(uid) != 0) return false;
    now_.uid = uid;
    return true;
}

AsUser::AsUser(const Identity& user) : own_(std::in_place), users_(&*own_), taken_(users_->Take(user)) {}

AsUser::AsUser(ManyUsers* users, const Identity& user) : users_(users), taken_(users_->Take(user)) {}

AsUser::~AsUser() {
    if (!own_) users_->Leave();
}

std::vector<gid_t> GroupsOf(const SString& login, gid_t gid) {
    int count = 32;
    std::vector<gid_t> groups(static_cast<size_t>(count));
    while (getgrouplist(login.CString(), gid, groups.data(), &count) < 0) {
        groups.resize(std::max(static_cast<size_t>(count), groups.size() * 2));
        count = static_cast<int>(groups.size());
    }
    groups.resize(static_cast<size_t>(count));
    return groups;
}

void RememberGroups() {
    GroupsAtStart() = CurrentGroups();
}

bool BecomeRootAsStarted() {
    const uid_t uid = getuid();
    const gid_t gid = getgid();
    const auto& groups = GroupsAtStart();
    return seteuid(uid) == 0 && (!groups || setgroups(groups->size(), groups->data()) == 0) &&
           setresgid(gid, gid, gid) == 0 && setresuid(uid, uid, uid) == 0;
}
