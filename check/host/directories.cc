// The mail system's directories, as the package makes them and its programs need them.
#include <sys/stat.h>

#include <array>
#include <cstdio>

#include "check/looks.h"
#include "install/reminders.h"
#include "install/settings.h"
#include "support/system/file.h"
#include "support/system/identity.h"

namespace {

constexpr mode_t kPermissionBits = 07777;
constexpr mode_t kOwnersRights = S_IRWXU;
constexpr mode_t kOthersRights = S_IRWXO;
constexpr mode_t kLookersRights = S_IROTH | S_IXOTH;
constexpr uid_t kRoot = 0;

struct Directory {
    SString path;
    const char* mode;  // the package's; the group's part in it is the administrator's choice
    bool is_made_by_install = false;
    bool is_shared = false;  // others may look, and it may be root's
};

std::array<Directory, 6> Directories() {
    return {{{gstr_TernHarbor, "755", false, true},
             {gstr_TernHarbor + "config", "750"},
             {gstr_TernHarbor + "control", "770"},
             {gstr_TernHarbor + "messages", "770"},
             {gstr_TernHarbor + "deferred", "770"},
             {gstr_MailboxDir, "770", true}}};
}

SString Octal(mode_t mode) {
    std::array<char, 8> text{};
    snprintf(text.data(), text.size(), "%o", static_cast<unsigned>(mode & kPermissionBits));
    return text.data();
}

SString ToSetOwner(const SString& path) {
    return "chown " + ShellWord(gstr_MailOwner) + ":" + ShellWord(gstr_MailGroup) + " " + ShellWord(path);
}

SString ToSetMode(const SString& path, const SString& mode) {
    return "chmod " + mode + " " + ShellWord(path);
}

bool IsOwners(const struct stat& status) {
    return status.st_uid == static_cast<uid_t>(gn_MailUID) && status.st_gid == static_cast<gid_t>(gn_MailGID);
}

SString OwnerAndMode(const SString& path, const struct stat& status) {
    return FileOwner(path) + ":" + FileGroup(path) + ", mode " + Octal(status.st_mode);
}

void ReportMissing(const Directory& directory, Findings* findings) {
    if (directory.is_made_by_install) {
        findings->Note("directories", directory.path + " is missing; Install makes it");
    } else {
        findings->Problem("directories", directory.path + " is missing",
                          "dpkg-reconfigure tern.harbor-install");
    }
}

bool HasMode(const Directory& directory, const struct stat& status) {
    const mode_t refused = directory.is_shared ? kOthersRights & ~kLookersRights : kOthersRights;
    return (status.st_mode & kOwnersRights) == kOwnersRights && (status.st_mode & refused) == 0;
}

void LookAtOne(const Directory& directory, Findings* findings) {
    struct stat status {};
    if (stat(directory.path.CString(), &status) != 0) {
        if (IsMissing(directory.path)) return ReportMissing(directory, findings);
        return findings->NotLookedAt("directories", directory.path + " cannot be examined");
    }
    const SString found = directory.path + " is of " + OwnerAndMode(directory.path, status);
    if (!S_ISDIR(status.st_mode)) {
        findings->Problem("directories", directory.path + " is no directory");
    } else if (!IsOwners(status) && !(directory.is_shared && status.st_uid == kRoot)) {
        findings->Problem("directories", found, ToSetOwner(directory.path));
    } else if (!HasMode(directory, status)) {
        findings->Problem("directories", found, ToSetMode(directory.path, directory.mode));
    } else {
        findings->Ok("directories", found);
    }
}

/// What SQLite keeps beside a database has its mode from it.
void LookAtDatabase(const SString& path, Findings* findings) {
    struct stat status {};
    if (lstat(path.CString(), &status) != 0 || !S_ISREG(status.st_mode)) return;
    const SString found = path + " is of " + OwnerAndMode(path, status);
    if (!IsOwners(status)) {
        findings->Problem("directories", found, ToSetOwner(path));
    } else if ((status.st_mode & kOthersRights) != 0 || (status.st_mode & S_IRUSR) == 0) {
        findings->Problem("directories", found, ToSetMode(path, "640"));
    }
}

}  // namespace

void LookAtDirectories(Findings* findings) {
    const AsRoot root;
    for (const Directory& directory : Directories()) LookAtOne(directory, findings);
    SStringList files = ReadDir(gstr_TernHarbor + "config");
    files.Sort();
    for (const SString& file : files) LookAtDatabase(file, findings);
}
