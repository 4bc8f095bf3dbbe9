#include "install/host/inetd.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "install/settings.h"
#include "support/system/descriptor.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

struct Reading {
    SString text;
    SStringList services;
};

TEST(ActiveServices, AreTheFirstWordsOfEntries) {
    const Reading cases[] = {
        {"", {}},
        {"# smtp stream\n\n   \n\t# pop3 stream\n#\n", {}},
        {"smtp stream tcp nowait root /in.smtpd\npop3\tstream\n", {"smtp", "pop3"}},
        {"  smtp stream\n", {"smtp"}},
        {"smtps stream\n", {"smtps"}},
        {"smtp stream\r\npop3\r\n", {"smtp", "pop3"}},
        {"smtp\n", {"smtp"}},
        {"finger stream\nsmtp", {"finger"}},
        {"finger stream\n  smtp", {"finger"}},
        {"smtp stream", {"smtp"}},
        {"smtp # off\n", {"smtp"}},
        {"#<off># smtp stream\n", {}},
    };
    for (const Reading& reading : cases) {
        EXPECT_EQ(ActiveServices(Lines(reading.text)), reading.services) << reading.text;
    }
}

TEST(ActiveServices, SurvivesAVeryLongLine) {
    const SString blanks(' ', 10'000'000);
    EXPECT_EQ(ActiveServices({"smtp" + blanks + "\n", blanks + "pop3 x\n", blanks + "\n"}).Count(), 2U);
}

struct Rewrite {
    SString before;
    SString after;
};

TEST(WithoutServices, CommentsTheirEntriesOut) {
    const Rewrite cases[] = {
        {"smtp stream tcp\n", "#smtp stream tcp\n"},
        {"  \tsmtp stream\n", "#smtp stream\n"},
        {"pop3\tstream\npop-3 stream\n", "#pop3\tstream\n#pop-3 stream\n"},
        {"smtp\n", "#smtp\n"},
        {"smtp\r\n", "#smtp\r\n"},
        {"smtps stream\nxsmtp stream\nSMTP stream\n", "smtps stream\nxsmtp stream\nSMTP stream\n"},
        {"# smtp stream\n#smtp stream\n", "# smtp stream\n#smtp stream\n"},
        {"time stream smtp \n\n", "time stream smtp \n\n"},
        {"smtp", "smtp"},
        {"smtp stream", "#smtp stream"},
        {"", ""},
    };
    for (const Rewrite& rewrite : cases) {
        EXPECT_EQ(WithoutServices(Lines(rewrite.before), {"smtp", "pop3", "pop-3"}).Join(), rewrite.after)
            << rewrite.before;
    }
}

TEST(UpdateInetdConf, RewritesAReadOnlyFileBesideItsSecondBackup) {
    const TemporaryFolder folder;
    gstr_InetdConf = folder.Write("inetd.conf", "smtp stream\ntime stream\n", 0444);
    folder.Write("inetd.conf.bak", "first\n");
    EXPECT_TRUE(UpdateInetdConf({"smtp"}));
    EXPECT_EQ(MapFileRead(gstr_InetdConf), "#smtp stream\ntime stream\n");
    EXPECT_EQ(MapFileRead(folder / "inetd.conf.bak"), "first\n");
    EXPECT_EQ(MapFileRead(folder / "inetd.conf.bak1"), "smtp stream\ntime stream\n");
    struct stat status {};
    ASSERT_EQ(stat(gstr_InetdConf.CString(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0444U);
}

}  // namespace
