#include "install/sequence.h"

#include <gtest/gtest.h>

#include "install/steps.h"
#include "support/text/sstring_list.h"
#include "tests/dialogue.h"

namespace {

TEST(Sequence, HasItsOrder) {
    SStringList names;
    for (const Step& step : Sequence()) names.Push(step.name);
    EXPECT_EQ(names, SStringList({"Initialize", "CreateMailboxDir", "UpdateConfiguration", "FixMaildropDir",
                                  "SetupSpecialAccounts", "AddUserAccounts", "SetupAdminAccount",
                                  "ConfigureFeatures", "EditInetdConf", "KillSendmail", "InstallSendmail",
                                  "KillServers", "StartDaemon", "WarnAdmin"}));
}

TEST(Sequence, RunsTheStepsThatItNames) {
    EXPECT_EQ(Sequence().front().run, Initialize);
    EXPECT_EQ(Sequence().back().run, WarnAdmin);
}

TEST(FullInstall, ExplainsItselfAndTakesNoForAnAnswer) {
    for (const char* answer : {"no\n", "Quit\n"}) {
        const Dialogue dialogue(answer);
        EXPECT_FALSE(FullInstall());
        EXPECT_EQ(dialogue.Screen(),
                  "\n"
                  "This installation program will occasionally ask you for permission to\n"
                  "perform a task, or alert you of a problem.  When asking a question that has\n"
                  "a default response, you can simply press 'Return' to specify the default.\n"
                  "The default is the value shown in the square brackets '[' and ']'.\n"
                  "\n"
                  "Do you want to continue? yes/no/quit [yes] \n");
    }
}

}  // namespace
