#include "undo/mail_system/kept_files.h"

#include <fcntl.h>
#include <unistd.h>

#include "support/system/descriptor.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "support/system/regular_file.h"
#include "undo/mail_system/access_list.h"

namespace {

constexpr uid_t kRoot = 0;
constexpr off_t kMostBytes = off_t{256} << 20;  // of holes, its owner may make it as long as they like
constexpr mode_t kPermissions = 0777;  // the directory's owner may have written the file: no set-user-ID

/// To the file that was just made, whoever has its name by now.
bool Give(const Descriptor& file, const change::Access& access) {
    const AsRoot root;
    return fchown(file.Get(), access.owner, access.group) == 0 && SetAccessList(file, access.access_list) &&
           fchmod(file.Get(), access.mode.bits & kPermissions) == 0;
}

/// Root's until it is given away: it may get what only root could read. In a directory of the effective
/// user's only, and opened as that, who could lead root elsewhere by a link.
Descriptor NewFile(const SString& path) {
    const Descriptor directory = Descriptor::Open(path.S("[^/]+$", ""), O_RDONLY | O_DIRECTORY);
    if (!directory || faccessat(directory.Get(), ".", W_OK | X_OK, AT_EACCESS) != 0) return {};
    const AsRoot root;
    return Descriptor::OpenAt(directory.Get(), BaseName(path, ""), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW,
                              0600);
}

}  // namespace

std::optional<SString> KeptBytes(const change::KeptFile& kept, const SString& folder) {
    if (kept.kept.IsEmpty() || kept.kept.Index('/') >= 0) return std::nullopt;
    const AsRoot root;
    const RegularFile file = OpenRegularFile(folder + kept.kept, O_RDONLY, Links::NotAtEnd);
    return file && file.status.st_uid == kRoot ? file.descriptor.ReadAll() : std::nullopt;
}

std::optional<SString> BytesOf(const SString& path) {
    const RegularFile file = OpenRegularFile(path, O_RDONLY, Links::NotAtEnd);
    if (!file || file.status.st_size > kMostBytes) return std::nullopt;
    return file.descriptor.ReadAll(static_cast<size_t>(kMostBytes));
}

bool MakeAnew(const SString& path, const SString& bytes, const change::Access& access) {
    const SString hidden = HiddenBeside(path, ".undo");
    RemoveFile(hidden);
    Descriptor file = NewFile(hidden);
    const bool is_made = file && file.WriteAll(bytes) && Give(file, access) && file.Sync() && file.Close() &&
                         Rename(hidden, path);
    if (!is_made) RemoveFile(hidden);
    return is_made && SyncParent(path);
}
