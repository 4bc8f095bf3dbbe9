#include "install/record/file_id.h"

#include <sys/stat.h>

#include "support/system/file.h"

std::optional<change::FileId> FileIdOf(const SString& path) {
    struct stat status {};
    if (lstat(path.CString(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return change::FileId{status.st_ino, BirthTime(path)};
}

bool IsThatFile(const SString& path, const change::FileId& id) {
    const auto found = FileIdOf(path);
    return found && found->inode == id.inode && found->born == id.born;
}
