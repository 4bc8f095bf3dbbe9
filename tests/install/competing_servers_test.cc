#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>

#include <utility>

#include "install/server_lists.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/descriptor.h"
#include "tests/dialogue.h"

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

TEST(KillServers, FindsNothingWhereNothingListens) {
    gstrl_Services = {"smtp"};
    gstrl_ServicePorts = {"0"};
    gf_TernHarborIsRunning = 7;
    const Dialogue dialogue;
    EXPECT_TRUE(KillServers());
    EXPECT_EQ(dialogue.Screen(), "Checking for active server processes.... none found (that's good)\n");
    EXPECT_EQ(gf_TernHarborIsRunning, 7);
    EXPECT_TRUE(gstrl_Reminders.IsEmpty());
    gf_TernHarborIsRunning = 0;
}

/// A port of the kernel's choice that listens, as the only service that the mail system needs.
Descriptor ListenAsOnlyService() {
    Descriptor listening(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const name = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(listening.Get(), name, length), 0);
    EXPECT_EQ(listen(listening.Get(), 1), 0);
    EXPECT_EQ(getsockname(listening.Get(), name, &length), 0);
    gstrl_Services = {"smtp"};
    gstrl_ServicePorts = SString(ntohs(address.sin_port));
    return listening;
}

TEST(KillServers, GoesOnWithWhatCouldNotBeStopped) {
    const Descriptor listening = ListenAsOnlyService();
    const std::pair<SString, SStringList> cases[] = {
        {"no\n\n", {"Shutdown server:    smtp      (port=" + gstrl_ServicePorts[0] + ")", ""}},
        {"no\nno-such-server\n", {"Kill program (and prevent boot startup): no-such-server", ""}},
    };
    for (const auto& [answers, reminders] : cases) {
        gf_ShowStoppers = 0;
        gstrl_Reminders.Reset();
        const Dialogue dialogue(answers);
        EXPECT_TRUE(KillServers());
        EXPECT_EQ(gstrl_Reminders, reminders);
        EXPECT_EQ(gf_ShowStoppers, 1);
    }
    gf_ShowStoppers = 0;
    gstrl_Reminders.Reset();
}

TEST(KillServers, LeavesTheMailSystemItselfAlone) {
    const Descriptor listening = ListenAsOnlyService();
    char name_before[16] = "";
    prctl(PR_GET_NAME, name_before);
    prctl(PR_SET_NAME, "tern.harbor");
    const Dialogue dialogue;
    EXPECT_TRUE(KillServers());
    prctl(PR_SET_NAME, name_before);
    EXPECT_EQ(dialogue.Screen(), "Checking for active server processes.... tern.harbor is running\n");
    EXPECT_GE(gf_TernHarborIsRunning, 1);
    EXPECT_TRUE(gstrl_Reminders.IsEmpty());
    gf_TernHarborIsRunning = 0;
}

}  // namespace
