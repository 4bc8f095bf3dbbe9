#include "install/sentences.h"

#include <gtest/gtest.h>

#include "install/settings.h"
#include "tests/dialogue.h"

namespace {

TEST(Sentences, NameWhomToContact) {
    EXPECT_EQ(SupportLine(),
              "If you have difficulty resolving this problem, please contact Ardenvale, Inc. at "
              "support@ardenvale.example or at +1 555 0100.");
    EXPECT_EQ(
        ContactMessage(),
        "Contact Ardenvale at support@ardenvale.example or at +1 555 0100 if you need help resolving this "
        "problem.");
}

TEST(Abort, SaysSoAndStopsTheStep) {
    const Dialogue dialogue;
    EXPECT_FALSE(Abort());
    EXPECT_EQ(dialogue.Screen(), "Installation aborted.\n");
}

TEST(AbortOverAccounts, TellsHowTheDirectoryShouldLook) {
    const Dialogue dialogue;
    gstr_MailOwner = "mailtern";
    gstr_MailGroup = "mailers";
    EXPECT_FALSE(AbortOverAccounts("ERROR: refused."));
    EXPECT_EQ(dialogue.Screen(),
              "ERROR:  refused.\n"
              "The directory should be owned by mailtern with group mailers and mode 750.\n"
              "Each database in the directory should have the same owner and group, and\n"
              "have mode 640.\n"
              "Contact Ardenvale at support@ardenvale.example or at +1 555 0100 if you\n"
              "need help resolving this problem.\n"
              "Installation aborted.\n");
}

}  // namespace
