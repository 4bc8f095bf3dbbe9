#include "install/record/access.h"

#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>

#include "install/record/checksum.h"

namespace {

constexpr size_t kLongestValue = 65536;  // XATTR_SIZE_MAX of Linux

/// Empty where there is none, or none can be. `get` is getxattr of the file.
template <typename Get>
std::optional<SString> AccessList(const Get& get) {
    const ssize_t length = get(nullptr, 0);
    if (length < 0 && (errno == ENODATA || errno == ENOTSUP)) return "";
    std::string value(kLongestValue, 0);
    const ssize_t got = get(value.data(), value.size());
    if (length < 0 || got < 0) return std::nullopt;
    value.resize(static_cast<size_t>(got));
    return Hexadecimal(SString(std::move(value)));
}

change::Access AccessWith(const struct stat& status, const SString& list) {
    return {status.st_uid, status.st_gid, {status.st_mode & 07777U}, list};
}

}  // namespace

std::optional<change::Access> AccessOf(const Descriptor& file) {
    const auto status = file.Stat();
    return status ? AccessOf(file, *status) : std::nullopt;
}

std::optional<change::Access> AccessOf(const Descriptor& file, const struct stat& status) {
    const auto list = AccessList(
        [&](void* value, size_t size) { return fgetxattr(file.Get(), kAccessListAttribute, value, size); });
    return list ? std::optional(AccessWith(status, *list)) : std::nullopt;
}

std::optional<change::Access> AccessOf(const SString& path) {
    struct stat status {};
    const bool is_there = stat(path.CString(), &status) == 0;
    const auto list = AccessList([&](void* value, size_t size) {
        return getxattr(path.CString(), kAccessListAttribute, value, size);
    });
    return is_there && list ? std::optional(AccessWith(status, *list)) : std::nullopt;
}
