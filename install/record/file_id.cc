#include "install/record/file_id.h"

#include <sys/stat.h>

#include "support/system/file.h"
#include "support/system/regular_file.h"

std::optional<change::FileId> FileIdOf(const SString& path) {
    struct stat status {};
    if (lstat(path.CString(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return change::FileId{status.st_ino, BirthTime(path)};
}

bool IsThatFile(const SString& path, const change::FileId& id) {
    return FileIdOf(path) == id;
}

bool IsSecondName(const SString& path, const SString& other) {
    struct stat one {};
    struct stat two {};
    return stat(path.CString(), &one) == 0 && stat(other.CString(), &two) == 0 && IsSameFile(one, two);
}
