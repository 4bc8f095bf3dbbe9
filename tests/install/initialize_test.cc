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
    EXPECT_EQ(gstr_Runs, "/var/lib/tern.harbor-install/runs");
    EXPECT_EQ(gstr_PasswdFile, "/etc/passwd");
    EXPECT_EQ(gstr_InetdConf, Expected("/etc/inetd.conf"));
    EXPECT_EQ(gstr_ServicesFile, Expected("/etc/services"));
    EXPECT_EQ(gstr_MaildropDir, "/var/spool/mail/");
    EXPECT_EQ(gstr_Sendmail, "/usr/lib/sendmail");
    EXPECT_EQ(gstr_SendmailCF, "/etc/sendmail.cf");
    EXPECT_EQ(gstrl_Services, SStringList({"smtp", "pop3", "finger"}));
    EXPECT_EQ(gstrl_ServicePorts, SStringList({"25", "110", "79"}));
}

}  // namespace
