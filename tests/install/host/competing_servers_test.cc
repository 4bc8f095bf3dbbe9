#include <gtest/gtest.h>

#include "install/settings.h"
#include "install/steps.h"
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

}  // namespace
