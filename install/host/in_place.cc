#include "install/host/in_place.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

#include "support/system/file.h"

namespace {

constexpr mode_t kPermissions = 07777;
constexpr mode_t kOwnerWrite = 0200;

bool ReplaceContents(const Descriptor& file, const SString& bytes) {
    return lseek(file.Get(), 0, SEEK_SET) == 0 && ftruncate(file.Get(), 0) == 0 && file.WriteAll(bytes) &&
           file.Sync();
}

bool HasBytes(const Descriptor& file, const SString& bytes) {
    return lseek(file.Get(), 0, SEEK_SET) == 0 && file.ReadAll() == bytes;
}

}  // namespace

mode_t Original::Mode() const {
    return file.status.st_mode & kPermissions;
}

std::optional<Original> OpenOriginal(const SString& path, Links links) {
    RegularFile file = OpenRegularFile(path, O_RDONLY, links);
    if (!file) return std::nullopt;
    std::optional<SString> bytes = file.descriptor.ReadAll();
    if (!bytes) return std::nullopt;
    return Original{std::move(file), std::move(*bytes)};
}

WriteAccess::WriteAccess(const SString& path, const Original& original)
    : original_(original), had_it_(IsWriteable(path)), added_(!had_it_ && Change(kOwnerWrite)) {}

bool WriteAccess::GiveBack() {
    // Another try costs less than a note that stays.
    if (added_ && (Change(0) || Change(0))) added_ = false;
    return !added_;
}

bool WriteAccess::Change(mode_t added) const {
    return fchmod(original_.file.descriptor.Get(), original_.Mode() | added) == 0;
}

bool PutModeBack(const Original& found, mode_t mode) {
    const mode_t now = found.Mode();
    return now == mode || now != (mode | kOwnerWrite) || fchmod(found.file.descriptor.Get(), mode) == 0;
}

Descriptor OpenForWriting(const SString& path, const Original& original) {
    RegularFile file = OpenRegularFile(path, O_WRONLY, Links::All);
    // Taken again: overlayfs changes the inode number when a file is first opened for writing.
    const std::optional<struct stat> read = original.file.descriptor.Stat();
    const bool is_as_read =
        file && read && IsSameFile(file.status, *read) && HasBytes(original.file.descriptor, original.bytes);
    return is_as_read ? std::move(file.descriptor) : Descriptor();
}

Written WriteEither(const Descriptor& file, const SString& text, const SString& otherwise) {
    if (ReplaceContents(file, text)) return Written::Text;
    return ReplaceContents(file, otherwise) ? Written::Otherwise : Written::Neither;
}
