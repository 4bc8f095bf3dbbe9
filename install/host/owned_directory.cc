#include "install/host/owned_directory.h"

#include <sys/stat.h>
#include <unistd.h>

#include "support/system/file.h"
#include "support/system/identity.h"

namespace {

constexpr mode_t kPermissions = 0777;

SString WithoutTrailingSlash(SString path) {
    while (path.Length() > 1 && path.EndsWith("/")) path.Chop();
    return path;
}

/// Removes what a killed run left: an empty directory of our mode and owner. rmdir refuses full ones and
/// links.
void RemoveLeftOver(const SString& path, mode_t mode, uid_t owner) {
    struct stat facts {};
    if (lstat(path.CString(), &facts) != 0 || (facts.st_mode & kPermissions) != mode) return;
    if (facts.st_uid == getuid() || facts.st_uid == owner) rmdir(path.CString());
}

}  // namespace

NewDirectory MakeOwnedDirectory(const SString& path, mode_t mode, uid_t owner, gid_t group) {
    const AsRoot root;
    const SString name = WithoutTrailingSlash(path);
    RemoveLeftOver(name + ".new", mode, owner);
    const SString unfinished = FreeName(name + ".new");
    if (!MakeDir(unfinished, mode)) return NewDirectory::NotMade;
    const bool owned = lchown(unfinished.CString(), owner, group) == 0;
    if (!RenameNoReplace(unfinished, name)) {
        rmdir(unfinished.CString());
        return NewDirectory::NotMade;
    }
    return owned ? NewDirectory::Made : NewDirectory::NotOwned;
}
