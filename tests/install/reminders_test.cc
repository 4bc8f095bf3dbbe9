#include "install/reminders.h"

#include <gtest/gtest.h>

#include "install/settings.h"
#include "support/process/command.h"
#include "tests/dialogue.h"

namespace {

TEST(Remind, ClosesTheGroup) {
    gstrl_Reminders.Reset();
    Remind({"one", "two"});
    Remind("three");
    EXPECT_EQ(gstrl_Reminders, SStringList({"one", "two", "", "three", ""}));
    gstrl_Reminders.Reset();
}

TEST(ShellWord, IsQuotedOnlyWhereItMustBe) {
    const struct {
        SString name, word;
    } cases[] = {
        {"/var/opt/tern.harbor/config", "/var/opt/tern.harbor/config"},
        {"WWW-Server_2.install", "WWW-Server_2.install"},
        {"A;id>X;: .install", "'A;id>X;: .install'"},
        {"it's", "'it'\\''s'"},
        {"$(id)`id`\"\\", "'$(id)`id`\"\\'"},
        {"~root", "'~root'"},
        {"a\nb", "'a\nb'"},
        {"caf\xc3\xa9", "'caf\xc3\xa9'"},
        {"-rf", "./-rf"},
        {"-r f", "'./-r f'"},
        {"", "''"},
    };
    for (const auto& c : cases) EXPECT_EQ(ShellWord(c.name), c.word);
}

TEST(ShellWord, IsOneArgumentToTheShell) {
    for (const SString name :
         {"A;id>X;: .install", "it's", "'", "''", "a  b*?[c]", "$HOME`id`$(id)", "#x", "\\"}) {
        EXPECT_EQ(ReadCommand("printf %s " + ShellWord(name)).Join(""), name);
    }
}

TEST(PrintReminders, ShowsNoControlCharacters) {
    const Dialogue dialogue;
    gstrl_Reminders = {"Create mailbox directory: /mail\x1b[2J", "", "last"};
    PrintReminders();
    EXPECT_EQ(dialogue.Screen(), "    Create mailbox directory: /mail?[2J\n    \n    last\n");
    gstrl_Reminders.Reset();
}

}  // namespace
