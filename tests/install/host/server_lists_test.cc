#include "install/host/server_lists.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

const SString kIndent(' ', 8);

TEST(BusyServices, AreThoseWhosePortIsListening) {
    const SStringList services = {"smtp", "pop3", "finger", "tenletters", "elevenchars"};
    const SStringList ports = {"25", "110", "79", "1", "2"};
    const std::pair<SStringList, SStringList> cases[] = {
        {{}, {}},
        {{"80", "2525", "5", "11"}, {}},
        {{"79", "25", "25"}, {"smtp      (port=25)", "finger    (port=79)"}},
        {{"110"}, {"pop3      (port=110)"}},
        {{"1", "2"}, {"tenletters(port=1)", "elevenchars(port=2)"}},
    };
    for (const auto& [listening, busy] : cases) EXPECT_EQ(BusyServices(services, ports, listening), busy);
}

TEST(ProcessTable, HasFourSortedNamesARow) {
    const std::pair<SStringList, SString> cases[] = {
        {{}, kIndent + "\n\n"},
        {{"99 b", "98 a"}, kIndent + "a            b            \n\n"},
        {{"5 d", "6 c", "7 b", "8 a"}, kIndent + "a            b            c            d\n\n"},
        {{"5 e", "5 d", "6 c", "7 b", "8 a"},
         kIndent + "a            b            c            d\n" + kIndent + "e            \n\n"},
        {{"5 twelvetwelve", "6 thirteen-long", "7 Zed"},
         kIndent + "Zed          thirteen-long twelvetwelve \n\n"},
        {{"5 same", "6 same", "7 same"}, kIndent + "same         \n\n"},
        {{"5 a\x1b[2J"}, kIndent + "a?[2J        \n\n"},
    };
    for (const auto& [processes, table] : cases) EXPECT_EQ(ProcessTable(processes), table);
}

TEST(ProcessTable, NeverOffersTheSystemsOwn) {
    SStringList processes;
    for (const char* name :
         {"sched", "swapper", "init", "pageout",  "pagedaemon", "fsflush", "Install", "biod",    "cmdtool",
          "cron",  "csh",     "ksh",  "in.named", "listen",     "lockd",   "lpsched", "openwin", "ps",
          "sh",    "statd",   "tcsh", "syslogd",  "vi",         "xinit",   "xnews"}) {
        processes.Push(SString("12 ") + name);
    }
    EXPECT_EQ(ProcessTable(processes), kIndent + "\n\n");
    processes.Push("13 shell");
    EXPECT_EQ(ProcessTable(processes), kIndent + "shell        \n\n");
}

}  // namespace
