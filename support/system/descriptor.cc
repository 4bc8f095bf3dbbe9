#include "support/system/descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace {

constexpr size_t kChunk = 65536;

/// The directory that holds the path's last component.
SString ParentOf(const SString& path) {
    const std::string& bytes = path.Bytes();
    const size_t last = bytes.find_last_not_of('/');
    const size_t slash = last == std::string::npos ? last : bytes.rfind('/', last);
    if (slash == std::string::npos) return bytes.starts_with('/') ? "/" : ".";
    return SString(bytes.substr(0, slash + 1));
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        Close();
        fd_ = other.Release();
    }
    return *this;
}

Descriptor Descriptor::Open(const SString& path, int flags, mode_t mode) {
    return OpenAt(AT_FDCWD, path, flags, mode);
}

Descriptor Descriptor::OpenAt(int directory, const SString& name, int flags, mode_t mode) {
    int fd = -1;
    do {
        fd = openat(directory, name.CString(), flags | O_CLOEXEC | O_NOCTTY, mode);
    } while (fd < 0 && errno == EINTR);
    return Descriptor(fd);
}

int Descriptor::Release() {
    return std::exchange(fd_, -1);
}

bool Descriptor::Close() {
    // Linux has closed the descriptor even on EINTR: a second try could close another one.
    return fd_ < 0 || close(Release()) == 0 || errno == EINTR;
}

std::optional<struct stat> Descriptor::Stat() const {
    struct stat facts {};
    if (fstat(fd_, &facts) != 0) return std::nullopt;
    return facts;
}

std::optional<SString> Descriptor::ReadAll(size_t limit) const {
    std::string bytes;
    while (bytes.size() < limit) {
        const size_t before = bytes.size();
        const size_t wanted = std::min(kChunk, limit - before);
        bytes.resize(before + wanted);
        const ssize_t got = read(fd_, bytes.data() + before, wanted);
        bytes.resize(before + (got > 0 ? static_cast<size_t>(got) : 0));
        if (got == 0) break;
        if (got < 0 && errno != EINTR) return std::nullopt;
    }
    return SString(std::move(bytes));
}

bool Descriptor::WriteAll(const SString& bytes) const {
    std::string_view rest = bytes.Bytes();
    while (!rest.empty()) {
        const ssize_t written = write(fd_, rest.data(), rest.size());
        if (written < 0 && errno != EINTR) return false;
        if (written > 0) rest.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

bool Descriptor::Sync() const {
    return fsync(fd_) == 0;
}

bool SyncDirectory(const SString& path) {
    const Descriptor directory = Descriptor::Open(path, O_RDONLY | O_DIRECTORY);
    return directory && directory.Sync();
}

bool SyncParent(const SString& path) {
    return SyncDirectory(ParentOf(path));
}

bool OpenMissingDescriptors() {
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        const bool is_missing = fcntl(fd, F_GETFD) < 0;
        if (is_missing && open("/dev/null", O_RDWR | O_NOCTTY) < 0) return false;
    }
    return true;
}

void KeepOnly(const Descriptor& kept) {
    const Descriptor nowhere = Descriptor::Open("/dev/null", O_RDWR);
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (!nowhere || dup2(nowhere.Get(), fd) < 0) close(fd);
    }
    for (int fd = STDERR_FILENO + 1; fd < kept.Get(); ++fd) close(fd);
    closefrom(kept.Get() + 1);
}

void KeepFromChildren() {
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
}
