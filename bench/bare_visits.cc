// Visits homes and maildrop files with bare system calls.
#include "bench/bare_visits.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace {

constexpr gid_t kUsersGroup = 100;

bool LookAt(int directory, const char* name) {
    struct stat facts {};
    return fstatat(directory, name, &facts, AT_SYMLINK_NOFOLLOW) == 0;
}

void OpenAndLook(int directory, const char* name, int flags) {
    struct stat facts {};
    const int fd = openat(directory, name, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd >= 0) {
        fstat(fd, &facts);
        if (flags == O_RDONLY) {
            char bytes[4096];
            [[maybe_unused]] const ssize_t count = read(fd, bytes, sizeof bytes);
        }
        close(fd);
    }
}

bool LeaveNotice(int directory, const std::string& text) {
    const int fd = openat(directory, ".forward.NOTICE", O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    const bool is_written =
        fd >= 0 && write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return close(fd) == 0 && is_written;
}

bool VisitHomeBare(const SString& path, const std::string& notice) {
    const int home = open(path.CString(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (home < 0) return false;
    for (const char* name : {".project", ".plan"}) {
        if (LookAt(home, name)) OpenAndLook(home, name, O_RDONLY);
    }
    LookAt(home, ".forward");
    const bool is_left = LeaveNotice(home, notice);
    return close(home) == 0 && is_left;
}

}  // namespace

bool VisitBare(const ThrowAwaySite& site, int logins) {
    const std::string notice(321, 'x');  // about as long as the real one
    bool is_done = seteuid(0) == 0 && setgroups(1, &kUsersGroup) == 0 && setegid(kUsersGroup) == 0;
    for (int i = 0; i < logins && is_done; ++i) {
        const SString maildrop = site.MaildropFile(i);
        if (LookAt(AT_FDCWD, maildrop.CString())) OpenAndLook(AT_FDCWD, maildrop.CString(), O_WRONLY);
        is_done =
            seteuid(ThrowAwaySite::Uid(i)) == 0 && VisitHomeBare(site.Home(i), notice) && seteuid(0) == 0;
    }
    return is_done;
}
