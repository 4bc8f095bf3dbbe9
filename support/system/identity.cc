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

/// The user goes last: setting groups needs root's rights.
bool Take(const Identity& user) {
    return seteuid(getuid()) == 0 && setgroups(user.groups.size(), user.groups.data()) == 0 &&
           setegid(user.gid) == 0 && seteuid(user.uid) == 0;
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

AsUser::AsUser(const Identity& user) : before_{geteuid(), getegid(), {}} {
    const auto groups = CurrentGroups();
    if (!groups) return;
    before_.groups = *groups;
    taken_ = Take(user);
    if (!taken_ && !Take(before_)) EndAsRoot();
}

AsUser::~AsUser() {
    if (taken_ && !Take(before_)) EndAsRoot();
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
