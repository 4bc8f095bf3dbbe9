#include "undo/mail_system/access_list.h"

#include <sys/xattr.h>

#include <cerrno>
#include <string>

#include "install/record/access.h"

namespace {

std::optional<std::string> Bytes(const SString& hexadecimal) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    if (hexadecimal.Length() % 2 != 0) return std::nullopt;
    std::string bytes;
    for (size_t i = 0; i < hexadecimal.Length(); i += 2) {
        const size_t high = kDigits.find(hexadecimal.Bytes()[i]);
        const size_t low = kDigits.find(hexadecimal.Bytes()[i + 1]);
        if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
        bytes += static_cast<char>(high << 4 | low);
    }
    return bytes;
}

}  // namespace

bool SetAccessList(const Descriptor& file, const SString& hexadecimal) {
    if (hexadecimal.IsEmpty()) {
        return fremovexattr(file.Get(), kAccessListAttribute) == 0 || errno == ENODATA || errno == ENOTSUP;
    }
    const auto bytes = Bytes(hexadecimal);
    return bytes && fsetxattr(file.Get(), kAccessListAttribute, bytes->data(), bytes->size(), 0) == 0;
}
