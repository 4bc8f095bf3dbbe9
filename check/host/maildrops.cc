// The maildrop directory, and maildrops in it that are not their user's.
#include "install/visits/maildrop.h"

#include <sys/stat.h>

#include "answer/keys.h"
#include "check/looks.h"
#include "check/numerous.h"
#include "install/accounts/candidates.h"
#include "install/host/mail_directories.h"
#include "install/reminders.h"
#include "install/settings.h"
#include "support/system/file.h"

namespace {

SString OwnerOf(const SString& path, const struct stat& status) {
    const SString name = FileOwner(path);
    return name.IsEmpty() ? "user id " + SString(status.st_uid) : name;
}

void LookAtMaildrop(const PasswordEntry& entry, Numerous* found) {
    const SString path = gstr_MaildropDir + entry.login;
    struct stat status {};
    if (entry.login.Index('/') >= 0 || lstat(path.CString(), &status) != 0) return;
    if (!IsPlainMaildrop(status)) {
        found->Problem(path + " is a link, has a second name or is no file; Install leaves it alone",
                       "look at it with ls -li, and remove it");
    } else if (IsAnothersMaildrop(status, entry.uid)) {
        found->Problem(path + " belongs to " + OwnerOf(path, status) + "; Install gives it to its user", {},
                       LineFor(QuestionOf(QuestionId::AccountMethod), "p"));
    }
}

}  // namespace

void LookAtMaildropDir(Findings* findings) {
    const SString path = gstr_MaildropDir;
    switch (LookAtMaildropDirectory().state) {
        case MaildropDirectory::State::Missing:
            return findings->Problem("maildrop-directory", path + " is missing, or closed to the mail owner",
                                     "where maildrops are elsewhere: ln -s DIRECTORY /var/spool/mail");
        case MaildropDirectory::State::Unknown:
            return findings->NotLookedAt("maildrop-directory", path + " cannot be examined");
        case MaildropDirectory::State::NoSetgid:
            return findings->Problem("maildrop-directory",
                                     path + " lacks the setgid bit or the group's execute bit", {},
                                     LineFor(QuestionOf(QuestionId::SetSetgid), "yes"));
        case MaildropDirectory::State::Right:
            return findings->Ok("maildrop-directory", path + " has the setgid bit");
    }
}

void LookAtMaildrops(Findings* findings) {
    Numerous found("maildrops", findings);
    PasswordEntries entries;
    while (const auto entry = entries.Next()) {
        if (ReasonToSkip(*entry) == nullptr) LookAtMaildrop(*entry, &found);
    }
    found.End("none is a third login's, a link or the like");
}
