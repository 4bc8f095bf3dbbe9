#include "undo/mail_system/maildrop_return.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <vector>

#include "install/record/access.h"
#include "install/visits/maildrop.h"
#include "support/system/file.h"
#include "support/system/pending_file.h"
#include "support/system/regular_file.h"
#include "undo/mail_system/access_list.h"

namespace {

using change::MaildropGiven;

constexpr uid_t kRoot = 0;
constexpr mode_t kRights = 0777;
constexpr mode_t kRunsAsOwner = S_ISUID | S_ISGID;
/// The sticky bit means nothing on a file (Linux): it tells that Undo is at it; only the owner has rights.
constexpr mode_t kMark = 01000;
constexpr mode_t kMeanwhile = kMark | 0600;

bool IsOf(const change::Access& access, uid_t owner, gid_t group) {
    return access.owner == owner && access.group == group;
}

bool IsUnderWay(const change::Access& now, const MaildropGiven& given) {
    const bool is_ours =
        IsOf(now, given.user, given.mail_group) || IsOf(now, given.before.owner, given.before.group);
    return is_ours && (now.mode.bits & kMark) != 0 && (given.before.mode.bits & kMark) == 0;
}

/// At the end, or where a kill ended it: given, then without its access list, then with the mode.
bool IsAsLeft(const change::Access& now, const MaildropGiven& given) {
    if (!IsOf(now, given.user, given.mail_group)) return false;
    const bool has_no_list = now.access_list.IsEmpty();
    if (now.mode.bits == kMaildropMode && has_no_list) return true;
    const bool has_old_mode = (now.mode.bits & kRights) == (given.before.mode.bits & kRights);
    return has_old_mode && (has_no_list || now.access_list == given.before.access_list);
}

/// Its user may have written it meanwhile: what would run with its owner's rights stays without.
mode_t ModeOf(const change::Access& before) {
    return before.mode.bits & ~kRunsAsOwner;
}

bool IsBackWithoutSetId(const change::Access& now, const change::Access& before) {
    change::Access back = before;
    back.mode.bits = ModeOf(before);
    return now == back;
}

UsersOutcome Back(const change::Access& before) {
    return (before.mode.bits & kRunsAsOwner) == 0 ? UsersOutcome::Back : UsersOutcome::BackWithoutSetId;
}

/// The new owner gets rights only once the others have lost theirs.
bool SetAccess(const Descriptor& file, const change::Access& now, const change::Access& before) {
    const bool has_list = !now.access_list.IsEmpty() || !before.access_list.IsEmpty();
    if (IsOf(now, before.owner, before.group) && !has_list) return fchmod(file.Get(), ModeOf(before)) == 0;
    return fchmod(file.Get(), kMeanwhile) == 0 && fchown(file.Get(), before.owner, before.group) == 0 &&
           SetAccessList(file, before.access_list) && fchmod(file.Get(), ModeOf(before)) == 0;
}

struct PendingMaildrop {
    SString entry;
    Pending pending;
};

/// The directory is read once, as only runs that are over have left any.
const std::vector<PendingMaildrop>& PendingIn(const SString& directory) {
    static std::map<SString, std::vector<PendingMaildrop>> known;
    const auto [place, is_new] = known.try_emplace(directory);
    if (!is_new) return place->second;
    for (const SString& entry : ReadDir(directory)) {
        if (auto pending = PendingFrom(entry)) place->second.push_back({entry, std::move(*pending)});
    }
    return place->second;
}

bool IsEmptyMaildrop(const SString& path) {
    struct stat status {};
    return lstat(path.CString(), &status) == 0 && IsPlainMaildrop(status) && status.st_size == 0;
}

void RemovePending(const MaildropGiven& given) {
    const SString directory = given.path.S("[^/]+$", "");
    for (const auto& [entry, pending] : PendingIn(directory)) {
        const bool is_of_run = pending.path == given.path && pending.process == given.process;
        if (is_of_run && IsEmptyMaildrop(entry)) RemoveFile(entry);
    }
}

/// A run that was killed may not have given it to its user, who has no other.
UsersOutcome FinishReplaced(const RegularFile& file, const change::Access& now, const MaildropGiven& given) {
    const bool is_given = now.owner != kRoot || now.mode.bits != kMaildropModeUntilGiven;
    const bool is_done = is_given || (fchown(file.descriptor.Get(), given.user, given.mail_group) == 0 &&
                                      fchmod(file.descriptor.Get(), kMaildropMode) == 0);
    return is_done ? UsersOutcome::Replaced : UsersOutcome::Failed;
}

UsersOutcome Return(const RegularFile& file, const MaildropGiven& given) {
    const auto now = AccessOf(file.descriptor, file.status);
    if (!now) return UsersOutcome::Failed;
    if (*now == given.before) return UsersOutcome::Nothing;  // or a run was killed before it changed it
    if (IsBackWithoutSetId(*now, given.before)) return UsersOutcome::BackWithoutSetId;
    if (given.is_replaced) return FinishReplaced(file, *now, given);
    if (!IsAsLeft(*now, given) && !IsUnderWay(*now, given)) return UsersOutcome::Changed;
    if (!MayGoBack(given)) return UsersOutcome::ThirdLogins;
    return SetAccess(file.descriptor, *now, given.before) ? Back(given.before) : UsersOutcome::Failed;
}

}  // namespace

bool MayGoBack(const MaildropGiven& given) {
    return given.before.owner == kRoot || given.before.owner == given.user;
}

UsersOutcome GiveBack(const MaildropGiven& given) {
    if (given.is_replaced) RemovePending(given);
    struct stat seen {};
    if (lstat(given.path.CString(), &seen) != 0)
        return errno == ENOENT ? UsersOutcome::Nothing : UsersOutcome::Failed;
    if (!IsPlainMaildrop(seen)) return UsersOutcome::Changed;
    const RegularFile file = OpenRegularFile(given.path, O_RDONLY, Links::NotAtEnd);
    if (!file) return UsersOutcome::Failed;
    const bool is_same = IsSameFile(file.status, seen) && IsPlainMaildrop(file.status);
    return is_same ? Return(file, given) : UsersOutcome::Changed;
}
