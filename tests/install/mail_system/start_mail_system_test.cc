#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>

#include "install/settings.h"
#include "install/steps.h"
#include "tests/dialogue.h"
#include "tests/temporary_folder.h"

namespace {

TEST(StartDaemon, IsNotDoneWithShowStoppersUnlessAsked) {
    gf_ShowStoppers = 1;
    gstrl_Reminders = {"Kill program (and prevent boot startup): popd", ""};
    for (const char* answer : {"", "\n", "no\n", "quit\n", "maybe\n"}) {
        const Dialogue dialogue(answer);
        EXPECT_FALSE(StartDaemon()) << answer;
        EXPECT_EQ(dialogue.Screen(),
                  "\n"
                  "Before starting tern.harbor, you should take care of the problems that were\n"
                  "noted earlier in the installation procedure.  If you don't, the system may\n"
                  "not function properly.\n"
                  "\n"
                  "The unresolved items are:\n"
                  "\n"
                  "    Kill program (and prevent boot startup): popd\n"
                  "    \n"
                  "Do you want to try to start the system anyway? yes/no/quit [no] \n");
    }
    gf_ShowStoppers = 0;
    gstrl_Reminders.Reset();
}

TEST(StartDaemon, LeavesTheServerFourSecondsToSpeak) {
    const TemporaryFolder folder;
    gstr_ProgramDir = folder / "";
    folder.Write("tern.harbor", "#!/bin/sh\n", 0755);
    const auto begin = std::chrono::steady_clock::now();
    const Dialogue dialogue;
    EXPECT_TRUE(StartDaemon());
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
    EXPECT_GT(wait(nullptr), 0);
    gstr_ProgramDir = "";
}

}  // namespace
