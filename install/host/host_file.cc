#include "install/host/host_file.h"

#include <fcntl.h>
#include <unistd.h>

#include "support/system/file.h"
#include "support/system/identity.h"
#include "support/system/regular_file.h"

namespace {

constexpr mode_t kPermissions = 07777;

struct Original {
    RegularFile file;  // stays open, so that checks and mode changes reach this very file
    SString bytes;
};

std::optional<Original> OpenOriginal(const SString& path) {
    RegularFile file = OpenRegularFile(path, O_RDONLY, Links::All);
    if (!file) return std::nullopt;
    std::optional<SString> bytes = file.descriptor.ReadAll();
    if (!bytes) return std::nullopt;
    return Original{std::move(file), std::move(*bytes)};
}

/// The copy of the old contents, removed at the end of the scope unless kept.
class Backup {
  public:
    explicit Backup(const SString& path)
        // O_EXCL: somebody may have taken the name since. 0600: closed to others until it has its owner.
        : name_(FreeName(path + ".bak")),
          file_(Descriptor::Open(name_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600)) {}
    ~Backup() {
        if (file_ && !kept_) RemoveFile(name_);
    }
    Backup(const Backup&) = delete;
    Backup& operator=(const Backup&) = delete;

    /// True when the copy and its name are on the disk.
    bool Fill(const Original& original) const {
        return file_ && fchown(file_.Get(), original.file.status.st_uid, original.file.status.st_gid) == 0 &&
               fchmod(file_.Get(), original.file.status.st_mode & kPermissions) == 0 &&
               file_.WriteAll(original.bytes) && file_.Sync() && SyncParent(name_) && IsAsLongAs(original);
    }
    void Keep() { kept_ = true; }

  private:
    bool IsAsLongAs(const Original& original) const {
        const std::optional<struct stat> copy = file_.Stat();
        const std::optional<struct stat> now = original.file.descriptor.Stat();
        return copy && now && copy->st_size == now->st_size;
    }

    SString name_;
    Descriptor file_;
    bool kept_ = false;
};

/// Adds write permission for a scope, unless the file has it.
class WriteAccess {
  public:
    WriteAccess(const SString& path, const Original& original)
        : original_(original), had_it_(IsWriteable(path)), granted_(had_it_ || Change(0200)) {}
    ~WriteAccess() {
        if (granted_ && !had_it_) Change(0);
    }
    WriteAccess(const WriteAccess&) = delete;
    WriteAccess& operator=(const WriteAccess&) = delete;
    bool IsGranted() const { return granted_; }

  private:
    bool Change(mode_t added) const {
        return fchmod(original_.file.descriptor.Get(),
                      (original_.file.status.st_mode | added) & kPermissions) == 0;
    }

    const Original& original_;
    bool had_it_;
    bool granted_;
};

/// Not truncated yet: it must be the file that was read. The latter's status is taken again, because
/// overlayfs changes the inode number when a file is first opened for writing.
Descriptor OpenForWriting(const SString& path, const Original& original) {
    RegularFile file = OpenRegularFile(path, O_WRONLY, Links::All);
    const std::optional<struct stat> read = original.file.descriptor.Stat();
    return file && read && IsSameFile(file.status, *read) ? std::move(file.descriptor) : Descriptor();
}

bool ReplaceContents(const Descriptor& file, const SString& bytes) {
    return lseek(file.Get(), 0, SEEK_SET) == 0 && ftruncate(file.Get(), 0) == 0 && file.WriteAll(bytes) &&
           file.Sync();
}

}  // namespace

std::optional<SStringList> ReadHostFile(const SString& path) {
    const AsRoot root;
    const std::optional<Original> original = OpenOriginal(path);
    if (!original) return std::nullopt;
    return Lines(original->bytes);
}

bool RewriteHostFile(const SString& path, const LineEdit& edit) {
    const AsRoot root;
    const std::optional<Original> original = OpenOriginal(path);
    if (!original) return false;
    const SString changed = edit(Lines(original->bytes)).Join();
    Backup backup(path);
    if (!backup.Fill(*original)) return false;
    const WriteAccess access(path, *original);
    if (!access.IsGranted()) return false;
    const Descriptor file = OpenForWriting(path, *original);
    if (!file) return false;
    backup.Keep();
    if (ReplaceContents(file, changed)) return true;
    ReplaceContents(file, original->bytes);
    return false;
}
