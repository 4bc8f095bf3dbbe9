// Checks the mail system's mailbox directory and the host's maildrop directory, and makes them right.
#include "install/host/mail_directories.h"

#include <sys/stat.h>

#include <optional>

#include "install/console.h"
#include "install/host/owned_directory.h"
#include "install/record/record.h"
#include "install/reminders.h"
#include "install/sentences.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/system/file.h"
#include "support/system/identity.h"

namespace {

constexpr mode_t kMailboxMode = 0770;
constexpr mode_t kPermissionBits = 07777;
// Prescribed together: without group execute, setgid means mandatory locking on some systems.
constexpr mode_t kSetgidBits = S_ISGID | S_IXGRP;

bool TellMailboxDirNotMade() {
    BreakProgress();
    Tell({"WARNING: Couldn't create the mailbox directory: " + gstr_MailboxDir,
          "This directory is required for correct operation of the mail system. Without it, you can not have "
          "users retrieve their mail via the network (e.g. via POP3). Please create this directory with "
          "permissions drwxrwx--- owned by user '" +
              gstr_MailOwner + "' and group '" + gstr_MailGroup + "'."});
    Remind({"Create mailbox directory: " + gstr_MailboxDir,
            "and set owner/group/perms to: " + gstr_MailOwner + "/" + gstr_MailGroup + "/drwxrwx---"});
    return AskToContinue();
}

bool TellMailboxDirNotOwned() {
    BreakProgress();
    Tell("WARNING: Couldn't set owner/group for the mailbox directory: " + gstr_MailboxDir + ".");
    Remind({"Set owner/group of " + gstr_MailboxDir + " to: " + gstr_MailOwner + "/" + gstr_MailGroup});
    return true;
}

/// Worded differently from ContactMessage, as prescribed.
SString PleaseContact() {
    return "Please contact Ardenvale at " + SupportContact() + " if you need help resolving this problem.";
}

bool TellMaildropMissing() {
    EndProgress("not found!\n");
    Tell({"The user maildrop directory, " + gstr_MaildropDir +
              ", was not found on your system. This is currently hardcoded into tern.harbor as the "
              "location for user maildrops. We will need to make modifications to the Install program to "
              "let you specify a different location.",
          PleaseContact()});
    return false;
}

bool TellMaildropUnknown() {
    EndProgress("failed!\n");
    Tell({"Couldn't stat(2) the user maildrop directory, " + gstr_MaildropDir +
              ", to determine permissions. Perhaps running this program again will fix the problem....",
          PleaseContact()});
    Abort();
    Print("\n");
    return false;
}

std::optional<mode_t> Permissions(const SString& path) {
    const AsRoot root;
    struct stat facts {};
    if (stat(path.CString(), &facts) != 0) return std::nullopt;
    return facts.st_mode & kPermissionBits;
}

bool SetPermissions(const SString& path, mode_t mode) {
    const AsRoot root;
    return chmod(path.CString(), mode) == 0;
}

void ExplainSetgid() {
    BreakProgress();
    Tell({"The user maildrop directory, " + gstr_MaildropDir +
              ", does not have the setgid flag set. Without this set, any file created in that "
              "directory will be assigned the group of the creating user, "
              "rather than the 'mail' group.",
          "Since tern.harbor does not invoke /usr/bin/mail as root, it is important that every user's "
          "maildrop file has the proper group ownership (any improper permissions on existing maildrop files "
          "will be corrected later in this installation). "
          "The long-term solution is to make sure the setgid bit is set."});
}

void RemindOfSetgid() {
    Remind({"chmod g+s " + ShellWord(gstr_MaildropDir)});
}

void SetSetgid(mode_t mode) {
    const mode_t before = Permissions(gstr_MaildropDir).value_or(mode);
    RecordChange(change::ModeSet{RealPath(gstr_MaildropDir), {before}, {mode | kSetgidBits}});
    if (SetPermissions(gstr_MaildropDir, mode | kSetgidBits)) return;
    Tell("WARNING: failed to set the setgid bit on " + gstr_MaildropDir +
         ". You will be reminded to do this at the end of the installation.");
    RemindOfSetgid();
}

}  // namespace

bool CreateMailboxDir() {
    BeginProgress("Checking for Mailbox directory");
    if (IsDirectory(gstr_MailboxDir)) {
        EndProgress("found");
        return true;
    }
    EndProgress("not found");
    BeginProgress("Creating Mailbox directory");
    switch (MakeOwnedDirectory(gstr_MailboxDir, kMailboxMode, static_cast<uid_t>(gn_MailUID),
                               static_cast<gid_t>(gn_MailGID))) {
        case NewDirectory::NotMade:
            return TellMailboxDirNotMade();
        case NewDirectory::NotOwned:
            return TellMailboxDirNotOwned();
        case NewDirectory::Made:
            break;
    }
    EndProgress("OK");
    return true;
}

MaildropDirectory LookAtMaildropDirectory() {
    using enum MaildropDirectory::State;
    if (!IsDirectory(RealPath(gstr_MaildropDir))) return {Missing};
    const auto mode = Permissions(gstr_MaildropDir);
    if (!mode) return {Unknown};
    return {(*mode & kSetgidBits) == kSetgidBits ? Right : NoSetgid, *mode};
}

bool FixMaildropDir() {
    BeginProgress("Checking user maildrop directory");
    const MaildropDirectory found = LookAtMaildropDirectory();
    switch (found.state) {
        case MaildropDirectory::State::Missing:
            return TellMaildropMissing();
        case MaildropDirectory::State::Unknown:
            return TellMaildropUnknown();
        case MaildropDirectory::State::Right:
            EndProgress("OK");
            return true;
        case MaildropDirectory::State::NoSetgid:
            break;
    }
    ExplainSetgid();
    const char answer = Ask(QuestionId::SetSetgid);
    if (answer == 'q') return false;
    if (answer == 'y') {
        SetSetgid(found.mode);
    } else {
        RemindOfSetgid();
    }
    return true;
}
