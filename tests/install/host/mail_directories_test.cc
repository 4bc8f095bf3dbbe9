#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "install/settings.h"
#include "install/steps.h"
#include "support/system/file.h"
#include "tests/dialogue.h"
#include "tests/temporary_folder.h"

namespace {

mode_t Mode(const SString& path) {
    struct stat facts {};
    return lstat(path.CString(), &facts) == 0 ? facts.st_mode & 07777 : 0;
}

TEST(CreateMailboxDir, LeavesAnExistingOneAsItIs) {
    const TemporaryFolder folder;
    gstr_MailboxDir = folder / "mailboxes/";
    ASSERT_TRUE(MakeDir(folder / "mailboxes", 0));
    const Dialogue dialogue;
    EXPECT_TRUE(CreateMailboxDir());
    EXPECT_EQ(dialogue.Screen(), "Checking for Mailbox directory.... found\n");
    EXPECT_EQ(Mode(folder / "mailboxes"), 0U);
}

struct Maildrop {
    mode_t before;
    SString answers;
    mode_t after;
    bool goes_on;
    bool reminds;
};

TEST(FixMaildropDir, SetsTheBitsThatAreAskedFor) {
    const Maildrop cases[] = {
        {02775, "", 02775, true, false},      {02010, "", 02010, true, false},
        {02764, "yes\n", 02774, true, false}, {01777, "Y\n", 03777, true, false},
        {0775, "\n", 02775, true, false},     {0770, "", 02770, true, false},
        {0775, "no\n", 0775, true, true},     {0775, "maybe\n", 0775, true, true},
        {0775, "quit\n", 0775, false, false},
    };
    for (const Maildrop& maildrop : cases) {
        const TemporaryFolder folder;
        gstr_MaildropDir = folder / "link/";
        gstrl_Reminders.Reset();
        ASSERT_TRUE(MakeDir(folder / "mail", 0700));
        ASSERT_EQ(chmod((folder / "mail").CString(), maildrop.before), 0);
        ASSERT_EQ(symlink("mail", (folder / "link").CString()), 0);
        const Dialogue dialogue(maildrop.answers);
        EXPECT_EQ(FixMaildropDir(), maildrop.goes_on);
        EXPECT_EQ(Mode(folder / "mail"), maildrop.after) << std::oct << maildrop.before;
        const SStringList reminders = {"chmod g+s " + gstr_MaildropDir, ""};
        EXPECT_EQ(gstrl_Reminders, maildrop.reminds ? reminders : SStringList());
        EXPECT_EQ(dialogue.Screen().EndsWith("OK\n"), (maildrop.before & 02010) == 02010);
    }
    gstrl_Reminders.Reset();
}

TEST(FixMaildropDir, StopsWithoutTheDirectory) {
    const TemporaryFolder folder;
    for (const SString& path : {folder / "none/", folder.Write("file", "")}) {
        gstr_MaildropDir = path;
        const Dialogue dialogue;
        EXPECT_FALSE(FixMaildropDir());
        EXPECT_TRUE(
            dialogue.Screen().StartsWith("Checking user maildrop directory.... not found!\n\nThe user "));
        EXPECT_FALSE(dialogue.Screen().Matches("Installation aborted"));
    }
}

}  // namespace
