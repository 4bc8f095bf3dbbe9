#include <gtest/gtest.h>

#include "install/settings.h"
#include "install/steps.h"
#include "support/system/file.h"

namespace {

/// The file that a setting should name on this host.
SString Expected(const SString& path) {
    return FileExists(path) ? RealPath(path) : path;
}

TEST(Initialize, SetsTheHostsFilesAndServices) {
    gstrl_Services.Reset();
    gstrl_ServicePorts.Reset();
    EXPECT_TRUE(Initialize());
    EXPECT_EQ(gstr_PasswdFile, "/etc/passwd");
    EXPECT_EQ(gstr_InetdConf, Expected("/etc/inetd.conf"));
    EXPECT_EQ(gstr_ServicesFile, Expected("/etc/services"));
    EXPECT_EQ(gstr_MaildropDir, "/var/spool/mail/");
    EXPECT_EQ(gstr_Sendmail, "/usr/lib/sendmail");
    EXPECT_EQ(gstr_SendmailCF, "/etc/sendmail.cf");
    EXPECT_EQ(gstrl_Services, SStringList({"smtp", "pop3", "finger"}));
    EXPECT_EQ(gstrl_ServicePorts, SStringList({"25", "110", "79"}));
}

TEST(Settings, StartWithTheLoginsOfSeveralVendors) {
    EXPECT_EQ(
        SStringList(gppz_BadUsers).Join(" "),
        "adm audit sysadm diag auditor dbadmin rfindd EZsetup demos OutOfBox 4Dgifts bin daemon ftp ingres "
        "listen lp noaccess nobody nuucp smtp sundiag sync sys sysdiag uucp");
}

TEST(Settings, ShareTheSupportLine) {
    EXPECT_EQ(SupportLine(),
              "If you have difficulty resolving this problem, please contact Ardenvale, Inc. at "
              "support@ardenvale.example or at +1 555 0100.");
}

TEST(Remind, ClosesTheGroup) {
    gstrl_Reminders.Reset();
    Remind({"one", "two"});
    Remind("three");
    EXPECT_EQ(gstrl_Reminders, SStringList({"one", "two", "", "three", ""}));
    gstrl_Reminders.Reset();
}

TEST(ReminderLines, ShowNoControlCharacters) {
    gstrl_Reminders = {"Create mailbox directory: /mail\x1b[2J", "", "last"};
    EXPECT_EQ(ReminderLines(), "    Create mailbox directory: /mail?[2J\n    \n    last\n");
    gstrl_Reminders.Reset();
}

}  // namespace
