// Visits homes and maildrop files with bare system calls.
#include "bench/bare_visits.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "support/system/identity.h"

namespace {

constexpr gid_t kUsersGroup = 100;

bool LookAt(const SString& path) {
    struct stat facts {};
    return lstat(path.CString(), &facts) == 0;
}

void OpenAndLook(const SString& path, int flags) {
    struct stat facts {};
    const int fd = open(path.CString(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd >= 0) {
        fstat(fd, &facts);
        if (flags == O_RDONLY) {
            char bytes[4096];
            [[maybe_unused]] const ssize_t count = read(fd, bytes, sizeof bytes);
        }
        close(fd);
    }
}

bool LeaveNotice(const SString& path, const std::string& text) {
    const int fd = open(path.CString(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    const bool is_written =
        fd >= 0 && write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return close(fd) == 0 && is_written;
}

}  // namespace

bool VisitBare(const ThrowAwaySite& site, int logins) {
    const std::string text(321, 'x');  // about as long as the real notice
    bool is_done = true;
    for (int i = 0; i < logins && is_done; ++i) {
        {
            const AsRoot root;
            if (LookAt(site.MaildropFile(i))) OpenAndLook(site.MaildropFile(i), O_WRONLY);
        }
        const AsUser user({ThrowAwaySite::Uid(i), kUsersGroup, {kUsersGroup}});
        const SString home = site.Home(i);
        for (const char* name : {"/.project", "/.plan"}) {
            if (LookAt(home + name)) OpenAndLook(home + name, O_RDONLY);
        }
        LookAt(home + "/.forward");
        is_done = user.IsTaken() && LeaveNotice(home + "/.forward.NOTICE", text);
    }
    return is_done;
}
