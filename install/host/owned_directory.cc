#include "install/host/owned_directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string_view>
#include <utility>

#include "install/record/record.h"
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

/// There is no call that only looks.
mode_t Mask() {
    const mode_t mask = umask(077);
    umask(mask);
    return mask;
}

bool IsEmpty(const Descriptor& directory) {
    DIR* stream = fdopendir(Descriptor::OpenAt(directory.Get(), ".", O_RDONLY | O_DIRECTORY).Release());
    if (stream == nullptr) return false;
    errno = 0;
    bool is_empty = true;
    while (const dirent* entry = readdir(stream)) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") is_empty = false;
    }
    is_empty = is_empty && errno == 0;
    closedir(stream);
    return is_empty;
}

}  // namespace

Descriptor OpenOwnEmptyDirectory(const SString& path) {
    Descriptor directory = Descriptor::Open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    const std::optional<struct stat> status = directory.Stat();
    const bool is_ours = status && status->st_uid == geteuid() && IsEmpty(directory);
    return is_ours ? std::move(directory) : Descriptor();
}

NewDirectory MakeOwnedDirectory(const SString& path, mode_t mode, uid_t owner, gid_t group) {
    const AsRoot root;
    const SString name = WithoutTrailingSlash(path);
    RemoveLeftOver(name + ".new", mode, owner);
    const SString unfinished = FreeName(name + ".new");
    RecordChange(change::DirectoryMade{name, unfinished, {owner, group, {mode & ~Mask()}, ""}});
    if (!MakeDir(unfinished, mode)) return NewDirectory::NotMade;
    // The mail owner may own the directory above and put something else in its place: hence by descriptor.
    const Descriptor made = OpenOwnEmptyDirectory(unfinished);
    const bool owned = made && fchown(made.Get(), owner, group) == 0;
    if (!made || !RenameNoReplace(unfinished, name)) {
        rmdir(unfinished.CString());
        return NewDirectory::NotMade;
    }
    return owned ? NewDirectory::Made : NewDirectory::NotOwned;
}
