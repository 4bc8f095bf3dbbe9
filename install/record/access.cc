#include "install/record/access.h"

#include <sys/xattr.h>

#include <cerrno>

#include "install/record/checksum.h"

namespace {

constexpr const char* kAccessList = "system.posix_acl_access";
constexpr size_t kLongestValue = 65536;  // XATTR_SIZE_MAX of Linux

/// Empty where there is none, or none can be.
std::optional<SString> AccessList(const Descriptor& file) {
    const ssize_t length = fgetxattr(file.Get(), kAccessList, nullptr, 0);
    if (length < 0 && (errno == ENODATA || errno == ENOTSUP)) return "";
    std::string value(kLongestValue, 0);
    const ssize_t got = fgetxattr(file.Get(), kAccessList, value.data(), value.size());
    if (length < 0 || got < 0) return std::nullopt;
    value.resize(static_cast<size_t>(got));
    return Hexadecimal(SString(std::move(value)));
}

}  // namespace

std::optional<change::Access> AccessOf(const Descriptor& file) {
    const auto status = file.Stat();
    const auto list = status ? AccessList(file) : std::nullopt;
    if (!list) return std::nullopt;
    return change::Access{status->st_uid, status->st_gid, {status->st_mode & 07777U}, *list};
}
