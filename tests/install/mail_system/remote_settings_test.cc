#include "install/mail_system/remote_settings.h"

#include <gtest/gtest.h>

#include "support/system/environment.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

TEST(PortNumber, ReadsTheDigitsInFront) {
    const struct {
        const char* text;
        int number;
        bool is_port;
    } cases[] = {
        {"", 0, false},     {"0", 0, false},         {"1", 1, true},    {"65535", 65535, true},
        {"-5", -5, false},  {"65536", 65536, false}, {"080", 80, true}, {"443x", 443, true},
        {" 25", 25, true},  {"word", 0, false},      {"+7", 7, true},   {"70000", 70000, false},
        {"0080", 80, true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(PortNumber(c.text), c.number) << c.text;
        EXPECT_EQ(IsPort(PortNumber(c.text)), c.is_port) << c.text;
    }
}

TEST(PortNumber, NeverWrapsIntoAPort) {
    for (const char* text : {"4294967376", "18446744073709551696", "99999999999999999999999999999999999999",
                             "-4294967216", "-99999999999999999999999999999999999"}) {
        EXPECT_FALSE(IsPort(PortNumber(text))) << text;
    }
}

TEST(ShownAccess, NamesTheTwoExtremes) {
    EXPECT_EQ(ShownAccess({}), SStringList("everywhere"));
    EXPECT_EQ(ShownAccess("none"), SStringList("nowhere"));
    EXPECT_EQ(ShownAccess({"a.example", "none"}), SStringList("nowhere"));
    EXPECT_EQ(ShownAccess({"a.example", "b.example"}), SStringList({"a.example", "b.example"}));
}

TEST(SettingsTable, LinesUpFurtherEntries) {
    const SString margin(' ', 50);
    EXPECT_EQ(SettingsTable({26, {"a.example", "b\x1b.example"}, false}),
              "    TCP/IP port for World-Wide-Web configuration: 26\n\n"
              "    World-Wide-Web configuration allowed from:    a.example\r\n" +
                  margin +
                  "b?.example\n\n"
                  "    Allow configuration via E-mail:               no\n\n");
}

TEST(ReadRemoteSettings, TakesWhatIsMissingAsTheModulesDo) {
    const TemporaryFolder folder;
    PutEnv("TernHarbor", folder / "");
    MakeDir(folder / "config", 0700);
    Sdbfile www_server("WWW-Server", 0);
    Sdbfile dispatch("Dispatch", 0);
    ASSERT_TRUE(www_server.Open("/Config", 1) && dispatch.Open("/Config", 1));
    const auto empty = ReadRemoteSettings(www_server, dispatch);
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->port, 0);
    EXPECT_TRUE(empty->access.IsEmpty());
    EXPECT_TRUE(empty->by_email);

    www_server.Set("Socket", {"0443", "ignored"});
    www_server.Set("WWWAccess", {"a.example", "b.example"});
    dispatch.Set("EmailConfig", "no");
    const auto settings = ReadRemoteSettings(www_server, dispatch);
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->port, 443);
    EXPECT_EQ(settings->access, SStringList({"a.example", "b.example"}));
    EXPECT_FALSE(settings->by_email);

    // Shown as none, they would be replaced.
    ASSERT_TRUE(RemoveFile(folder / "config/Dispatch"));
    EXPECT_FALSE(ReadRemoteSettings(www_server, dispatch));
}

}  // namespace
