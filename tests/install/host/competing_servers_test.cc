#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>

#include <utility>

#include "install/settings.h"
#include "install/steps.h"
#include "support/system/descriptor.h"
#include "tests/dialogue.h"

namespace {

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

TEST(KillServers, GoesOnWithWhatCouldNotBeStoppedAndLeavesTheMailSystemAlone) {
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

    // Here, as tests run beside each other, and none must take the other's process for the mail system.
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
