#include "answer/text_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "support/system/regular_file.h"

namespace {

constexpr size_t kMostBytes = 1'000'000;
constexpr mode_t kOthers = 077;

SString Exposure(const struct stat& status) {
    if (status.st_uid != 0 && status.st_uid != geteuid()) return "it does not belong to root";
    if ((status.st_mode & kOthers) != 0) return "others than root may read or change it (chmod 600)";
    return "";
}

}  // namespace

TextFile ReadTextFile(const SString& path) {
    const RegularFile file = OpenRegularFile(path, O_RDONLY, Links::All);
    if (!file && access(path.CString(), R_OK) != 0) return {"", std::strerror(errno), ""};
    if (!file) return {"", "it is no regular file", ""};
    const auto text = file.descriptor.ReadAll(kMostBytes + 1);
    if (!text) return {"", std::strerror(errno), ""};
    if (text->Length() > kMostBytes) return {"", "it is too large", ""};
    return {*text, "", Exposure(file.status)};
}
