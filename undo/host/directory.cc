// Removes a directory that was made, where it is still empty.
#include <fcntl.h>
#include <unistd.h>

#include "support/system/file.h"
#include "support/system/identity.h"
#include "support/system/trusted_path.h"
#include "undo/host/unreached.h"
#include "undo/ways.h"

namespace {

constexpr mode_t kPermissions = 0777;  // the setgid bit may have come from the directory above

enum class Now { Missing, AsLeft, Full, Others };

/// Root's, too: the run may have been killed before it gave the directory away, or failed to.
bool IsAsMade(const struct stat& status, const change::Access& access) {
    const bool is_owners = status.st_uid == access.owner && status.st_gid == access.group;
    return S_ISDIR(status.st_mode) && (is_owners || status.st_uid == 0) &&
           (status.st_mode & kPermissions) == (access.mode.bits & kPermissions);
}

Now Look(const std::optional<TrustedPlace>& place, const change::Access& access) {
    const auto status = place ? place->Status() : std::nullopt;
    if (!status) return Now::Missing;
    if (!IsAsMade(*status, access)) return Now::Others;
    return ReadDir(place->Path()).IsEmpty() ? Now::AsLeft : Now::Full;
}

Finding Found(Now now, const SString& path) {
    switch (now) {
        case Now::Missing:
            return {};
        case Now::AsLeft:
            return {Standing::AsLeft, "Remove the empty directory " + path};
        case Now::Full:
            return {Standing::Changed, "The directory " + path + " is not empty any more"};
        case Now::Others:
            break;
    }
    return {Standing::Changed, path + " is no longer the directory that the run made"};
}

/// rmdir refuses full ones and links.
bool Remove(const SString& path, const change::Access& access) {
    const auto place = FindTrusted(path);
    if (Look(place, access) != Now::AsLeft) return true;
    if (unlinkat(place->directory.Get(), place->name.CString(), AT_REMOVEDIR) != 0) return false;
    SyncParent(place->Path());
    return true;
}

}  // namespace

Finding LookAt(const change::DirectoryMade& change, const UndoneRun& /*run*/) {
    const AsRoot root;
    const auto place = FindTrusted(change.path);
    if (!place) return IsGone() ? Finding() : Unreached(change.path);
    Finding made = Found(Look(place, change.access), change.path);
    if (made.standing != Standing::AsBefore) return made;
    return Found(Look(FindTrusted(change.unfinished), change.access), change.unfinished);
}

TakenBack TakeBack(const change::DirectoryMade& change, const UndoneRun& /*run*/) {
    const AsRoot root;
    TakenBack taken;
    for (const SString& path : {change.path, change.unfinished}) {
        if (!Remove(path, change.access)) taken.left.Push("The directory " + path + " could not be removed");
    }
    taken.is_whole = taken.left.IsEmpty();
    return taken;
}
