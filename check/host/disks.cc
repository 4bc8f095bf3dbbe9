// Room on the disks that the mail system and an installation write to.
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <set>

#include "check/looks.h"
#include "install/settings.h"
#include "support/system/identity.h"

namespace {

constexpr uint64_t kMebibyte = uint64_t{1} << 20;
// An installation writes some hundred bytes an account, but mail comes in right after it.
constexpr uint64_t kTooFewBytes = 16 * kMebibyte;
constexpr uint64_t kFewBytes = 256 * kMebibyte;
constexpr uint64_t kTooFewFiles = 100;
constexpr uint64_t kFewFiles = 10000;

struct Room {
    uint64_t bytes;
    uint64_t files;
    bool has_file_limit;  // some file systems make inodes as they need them
    bool is_read_only;
};

Room RoomOf(const struct statvfs& facts) {
    return {uint64_t{facts.f_bavail} * facts.f_frsize, facts.f_favail, facts.f_files != 0,
            (facts.f_flag & ST_RDONLY) != 0};
}

void Report(const SString& path, const Room& room, Findings* findings) {
    const bool lacks_files = room.has_file_limit && room.files < kTooFewFiles;
    const bool has_few_files = room.has_file_limit && room.files < kFewFiles;
    const SString text = path + " has " + SString(room.bytes / kMebibyte) + " MiB" +
                         (room.has_file_limit ? " and " + SString(room.files) + " inodes" : SString()) +
                         " free";
    if (room.is_read_only) {
        findings->Problem("disk", path + " is mounted read-only",
                          "mount the file system that holds " + path + " writable");
    } else if (room.bytes < kTooFewBytes || lacks_files) {
        findings->Problem("disk", text, "make room on the file system that holds " + path);
    } else if (room.bytes < kFewBytes || has_few_files) {
        findings->Note("disk", text);
    } else {
        findings->Ok("disk", text);
    }
}

}  // namespace

void LookAtDisks(Findings* findings) {
    const AsRoot root;
    std::set<dev_t> seen;
    for (const SString& path :
         {gstr_TernHarbor, gstr_MailboxDir, gstr_MaildropDir, SString("/etc/"), SString("/usr/lib/")}) {
        struct stat status {};
        struct statvfs facts {};
        if (stat(path.CString(), &status) != 0 || statvfs(path.CString(), &facts) != 0) continue;
        if (seen.insert(status.st_dev).second) Report(path, RoomOf(facts), findings);
    }
}
