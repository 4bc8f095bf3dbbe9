#include "support/system/trusted_path.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>

#include "support/text/sstring_list.h"

namespace {

constexpr int kMostLinks = 40;        // as the kernel
constexpr mode_t kOthersWrite = 022;  // the group's bits are an access list's mask, too

Descriptor OpenName(const Descriptor& directory, const SString& name) {
    return Descriptor::OpenAt(directory.Get(), name, O_PATH | O_NOFOLLOW);
}

Descriptor OpenRootDirectory() {
    return Descriptor::Open("/", O_PATH | O_DIRECTORY);
}

SStringList NamesIn(const SString& path) {
    SStringList names = path.SplitExact("/");
    names.Delete("");
    names.Delete(".");
    return names;
}

/// Whether nobody but root can have put a link of root's there.
bool HoldsTrustedLinks(const Descriptor& directory) {
    const auto status = directory.Stat();
    const bool is_roots = status && status->st_uid == 0;
    return is_roots && ((status->st_mode & kOthersWrite) == 0 || (status->st_mode & S_ISVTX) != 0);
}

SString TextOf(const Descriptor& link) {
    std::array<char, PATH_MAX> text{};
    const ssize_t length = readlinkat(link.Get(), "", text.data(), text.size());
    return length > 0 ? SString(std::string(text.data(), static_cast<size_t>(length))) : SString();
}

class Walk {
  public:
    explicit Walk(const SString& path) : names_(NamesIn(path)), here_(OpenRootDirectory()) {
        if (!path.StartsWith("/")) here_ = Descriptor();
    }

    /// Up to where so many names are left.
    bool GoOn(size_t left) {
        while (here_ && names_.Count() > left) {
            if (!Enter(names_.Shift())) return false;
        }
        return static_cast<bool>(here_);
    }
    SString Last() { return names_.Shift(); }
    Descriptor Here() { return std::move(here_); }

  private:
    bool Enter(const SString& name) {
        Descriptor next = OpenName(here_, name);
        if (!next) return false;
        const auto status = next.Stat();
        if (!status) return false;
        if (S_ISLNK(status->st_mode)) return Follow(next, *status);
        if (!S_ISDIR(status->st_mode)) {
            errno = ENOTDIR;
            return false;
        }
        here_ = std::move(next);
        return true;
    }

    bool Follow(const Descriptor& link, const struct stat& status) {
        const SString text = TextOf(link);
        errno = ELOOP;
        if (status.st_uid != 0 || !HoldsTrustedLinks(here_) || ++links_ > kMostLinks || text.IsEmpty())
            return false;
        names_.Insert(NamesIn(text), 0);
        if (text.StartsWith("/")) here_ = OpenRootDirectory();
        return true;
    }

    SStringList names_;
    Descriptor here_;
    int links_ = 0;
};

}  // namespace

std::optional<struct stat> TrustedPlace::Status() const {
    struct stat status {};
    if (fstatat(directory.Get(), name.CString(), &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
    return status;
}

SString TrustedPlace::Path() const {
    return "/proc/self/fd/" + SString(directory.Get()) + "/" + name;
}

std::optional<TrustedPlace> FindTrusted(const SString& path) {
    Walk walk(path);
    errno = ENOENT;
    if (!walk.GoOn(1)) return std::nullopt;
    const SString name = walk.Last();
    if (name.IsEmpty() || name == "..") return std::nullopt;
    return TrustedPlace{walk.Here(), name};
}

Descriptor OpenTrustedDirectory(const SString& path) {
    Walk walk(path);
    errno = ENOENT;
    if (!walk.GoOn(0)) return {};
    return Descriptor::OpenAt(walk.Here().Get(), ".", O_RDONLY | O_DIRECTORY);
}
