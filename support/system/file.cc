#include "support/system/file.h"

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

#include "support/system/regular_file.h"

namespace {

constexpr int kMostNames = 10000;

std::optional<struct stat> Stat(const SString& path) {
    struct stat facts {};
    if (stat(path.CString(), &facts) != 0) return std::nullopt;
    return facts;
}

std::optional<struct stat> LinkStat(const SString& path) {
    struct stat facts {};
    if (lstat(path.CString(), &facts) != 0) return std::nullopt;
    return facts;
}

/// For file systems without RENAME_NOREPLACE: link never overwrites. A directory cannot be linked, but rename
/// replaces nothing by it except an empty directory.
bool RenameByLink(const SString& from, const SString& to) {
    const auto facts = LinkStat(from);
    if (!facts) return false;
    if (S_ISDIR(facts->st_mode)) {
        if (!EntryExists(to)) return Rename(from, to);
        errno = EEXIST;
        return false;
    }
    return AddName(from, to) && RemoveFile(from);
}

}  // namespace

bool FileExists(const SString& path) {
    return Stat(path).has_value();
}

bool IsMissing(const SString& path) {
    return !Stat(path) && (errno == ENOENT || errno == ENOTDIR || errno == ELOOP);
}

bool EntryExists(const SString& path) {
    return LinkStat(path).has_value() || (errno != ENOENT && errno != ENOTDIR);
}

bool IsDirectory(const SString& path) {
    const auto facts = Stat(path);
    return facts && S_ISDIR(facts->st_mode);
}

bool IsRegular(const SString& path) {
    const auto facts = Stat(path);
    return facts && S_ISREG(facts->st_mode);
}

bool IsWriteable(const SString& path) {
    const auto facts = Stat(path);
    return facts && (facts->st_mode & 0222) != 0 && eaccess(path.CString(), W_OK) == 0;
}

int64_t BirthTime(const SString& path) {
    struct statx status {};
    const bool is_known = statx(AT_FDCWD, path.CString(), AT_SYMLINK_NOFOLLOW, STATX_BTIME, &status) == 0 &&
                          (status.stx_mask & STATX_BTIME) != 0;
    return is_known ? status.stx_btime.tv_sec * 1'000'000'000 + status.stx_btime.tv_nsec : 0;
}

int64_t FileSize(const SString& path) {
    const auto facts = Stat(path);
    return facts ? facts->st_size : -1;
}

bool MakeDir(const SString& path, unsigned long mode) {
    return mkdir(path.CString(), static_cast<mode_t>(mode)) == 0;
}

SStringList ReadDir(const SString& path) {
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(path.CString()), closedir);
    if (!directory) return {};
    const SString prefix = path.EndsWith("/") ? path : path + "/";
    SStringList entries;
    errno = 0;
    while (const dirent* entry = readdir(directory.get())) {
        const SString name(entry->d_name);
        if (name != "." && name != "..") entries.Push(prefix + name);
    }
    return errno == 0 ? entries : SStringList();
}

SString RealPath(const SString& path) {
    const std::unique_ptr<char, void (*)(void*)> resolved(realpath(path.CString(), nullptr), free);
    return SString(resolved.get());
}

SString LinkText(const SString& path) {
    std::string text(PATH_MAX, 0);
    const ssize_t length = readlink(path.CString(), text.data(), text.size());
    text.resize(length > 0 ? static_cast<size_t>(length) : 0);
    return SString(std::move(text));
}

bool Rename(const SString& from, const SString& to) {
    return rename(from.CString(), to.CString()) == 0;
}

bool RenameNoReplace(const SString& from, const SString& to) {
    if (renameat2(AT_FDCWD, from.CString(), AT_FDCWD, to.CString(), RENAME_NOREPLACE) == 0) return true;
    return (errno == EINVAL || errno == ENOSYS) && RenameByLink(from, to);
}

bool ExchangeNames(const SString& path, const SString& other) {
    return renameat2(AT_FDCWD, path.CString(), AT_FDCWD, other.CString(), RENAME_EXCHANGE) == 0;
}

bool AddName(const SString& path, const SString& name) {
    return link(path.CString(), name.CString()) == 0;
}

bool RemoveFile(const SString& path) {
    return unlink(path.CString()) == 0;
}

SString MapFileRead(const SString& path) {
    const RegularFile file = OpenRegularFile(path, O_RDONLY, Links::All);
    return file ? file.descriptor.ReadAll().value_or("") : "";
}

SString BaseName(const SString& path, const SString& suffix) {
    std::string_view name = path.Bytes();
    while (name.ends_with('/')) name.remove_suffix(1);
    name.remove_prefix(name.rfind('/') + 1);
    if (name.ends_with(suffix.Bytes())) name.remove_suffix(suffix.Length());
    return SString(name);
}

SString HiddenBeside(const SString& path, const SString& ending) {
    const SString name = BaseName(path, "");
    const SString directory(path.Bytes().substr(0, path.Length() - name.Length()));
    return directory + "." + name + ending;
}

SStringList BaseName(const SStringList& paths, const SString& suffix) {
    SStringList names;
    for (const SString& path : paths) names.Push(BaseName(path, suffix));
    return names;
}

SString FileOwner(const SString& path) {
    const auto facts = LinkStat(path);
    const passwd* owner = facts ? getpwuid(facts->st_uid) : nullptr;
    return owner == nullptr ? SString() : SString(owner->pw_name);
}

SString FileGroup(const SString& path) {
    const auto facts = LinkStat(path);
    const group* owner = facts ? getgrgid(facts->st_gid) : nullptr;
    return owner == nullptr ? SString() : SString(owner->gr_name);
}

SString FreeName(const SString& path) {
    if (!EntryExists(path)) return path;
    // Bounded: in a directory that cannot be searched every name counts as taken.
    for (int number = 1; number < kMostNames; ++number) {
        SString name = path + SString(number);
        if (!EntryExists(name)) return name;
    }
    return "";
}
