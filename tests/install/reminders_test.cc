#include "install/reminders.h"

#include <gtest/gtest.h>

#include "install/settings.h"
#include "tests/dialogue.h"

namespace {

TEST(Remind, ClosesTheGroup) {
    gstrl_Reminders.Reset();
    Remind({"one", "two"});
    Remind("three");
    EXPECT_EQ(gstrl_Reminders, SStringList({"one", "two", "", "three", ""}));
    gstrl_Reminders.Reset();
}

TEST(PrintReminders, ShowsNoControlCharacters) {
    const Dialogue dialogue;
    gstrl_Reminders = {"Create mailbox directory: /mail\x1b[2J", "", "last"};
    PrintReminders();
    EXPECT_EQ(dialogue.Screen(), "    Create mailbox directory: /mail?[2J\n    \n    last\n");
    gstrl_Reminders.Reset();
}

}  // namespace
