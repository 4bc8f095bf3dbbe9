#include "undo/mail_system/maildrop_return.h"

#include <gtest/gtest.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "install/record/access.h"
#include "install/visits/maildrop.h"
#include "support/system/file.h"
#include "support/system/regular_file.h"
#include "tests/temporary_folder.h"
#include "tests/undo/mail_system/access_lists.h"
#include "undo/mail_system/access_list.h"

namespace {

constexpr uid_t kUser = 2001;
constexpr gid_t kMail = 2008;

class MaildropReturn : public testing::Test {
  protected:
    void Make(const change::Access& access, const SString& text = "From x\n") {
        RemoveFile(path_);
        folder_.Write("anna", text);
        Set(access);
    }
    void Set(const change::Access& access) const {
        const Descriptor file = Descriptor::Open(path_, O_RDONLY);
        ASSERT_TRUE(fchown(file.Get(), access.owner, access.group) == 0 &&
                    SetAccessList(file, access.access_list) && fchmod(file.Get(), access.mode.bits) == 0);
    }
    change::Access Now() const { return *AccessOf(Descriptor::Open(path_, O_RDONLY)); }
    change::MaildropGiven Given(const change::Access& before) const {
        return {path_, before, kUser, kMail, false, 4711};
    }

    TemporaryFolder folder_;
    SString path_ = folder_ / "anna";
};

const change::Access kGiven = {kUser, kMail, {0660}, ""};

TEST_F(MaildropReturn, GivesBackWhatTheRunTook) {
    const change::Access cases[] = {
        {0, 0, {0600}, ""},          {0, 8, {0644}, ""},      {kUser, 8, {0640}, ""},
        {kUser, kMail, {0600}, ""},  {kUser, kMail, {0}, ""}, {0, kMail, {0660}, kListWithAnother},
        {kUser, kMail, {01660}, ""},
    };
    for (const change::Access& before : cases) {
        Make(before);
        RepairMaildrop(path_, {kUser, kUser, {}}, kMail);
        ASSERT_EQ(Now(), kGiven);
        EXPECT_EQ(GiveBack(Given(before)), UsersOutcome::Back) << before.mode.bits;
        EXPECT_EQ(Now(), before) << before.mode.bits;
        EXPECT_EQ(GiveBack(Given(before)), UsersOutcome::Nothing);
        EXPECT_EQ(MapFileRead(path_), "From x\n");
    }
}

TEST_F(MaildropReturn, MakesNoProgramOfWhatItsUserWrote) {
    const change::Access cases[] = {{0, 0, {04755}, ""}, {0, 8, {02775}, ""}, {kUser, 8, {06770}, ""}};
    for (const change::Access& before : cases) {
        change::Access back = before;
        back.mode.bits &= 0777U;
        Make(kGiven, "#!/bin/sh\n");
        EXPECT_EQ(GiveBack(Given(before)), UsersOutcome::BackWithoutSetId);
        EXPECT_EQ(Now(), back) << before.mode.bits;
        EXPECT_EQ(GiveBack(Given(before)), UsersOutcome::BackWithoutSetId);
    }
}

TEST_F(MaildropReturn, FinishesFromEveryStepOfTheWay) {
    const change::Access before = {0, 8, {0660}, kListWithAnother};
    const change::Access steps[] = {
        {kUser, kMail, {0660}, kListWithAnother},  // there: given
        {kUser, kMail, {0660}, ""},                // without its list
        {kUser, kMail, {01600}, ""},               // back: closed
        {0, 8, {01600}, ""},                       // given back
        {0, 8, {01660}, kListWithAnother},         // with its list
    };
    for (const change::Access& step : steps) {
        Make(step);
        EXPECT_EQ(GiveBack(Given(before)), UsersOutcome::Back);
        EXPECT_EQ(Now(), before);
    }
}

TEST_F(MaildropReturn, LeavesWhatSomebodyChanged) {
    const change::Access before = {0, 8, {0600}, ""};
    const change::Access changed[] = {
        {kUser, kMail, {0640}, ""}, {33, kMail, {0660}, ""},
        {kUser, 33, {0660}, ""},    {kUser, kMail, {0660}, kListWithAnother},
        {0, 8, {0640}, ""},         {33, kMail, {01600}, ""},
    };
    for (const change::Access& now : changed) {
        Make(now);
        EXPECT_EQ(GiveBack(Given(before)), UsersOutcome::Changed);
        EXPECT_EQ(Now(), now);
    }
}

/// The change fails right after the owner's: a list that is none.
TEST_F(MaildropReturn, IsClosedToAllButItsOwnerMeanwhile) {
    const change::Access before = {0, 8, {0600}, "none"};
    Make(kGiven);
    EXPECT_EQ(GiveBack(Given(before)), UsersOutcome::Failed);
    EXPECT_EQ(Now(), (change::Access{0, 8, {01600}, ""}));
}

TEST_F(MaildropReturn, GivesNothingToAThirdLogin) {
    const change::MaildropGiven given = Given({33, kMail, {0660}, ""});
    EXPECT_FALSE(MayGoBack(given));
    Make(kGiven);
    EXPECT_EQ(GiveBack(given), UsersOutcome::ThirdLogins);
    EXPECT_EQ(Now(), kGiven);
}

TEST_F(MaildropReturn, CleansUpWhereAThirdLoginsWasReplaced) {
    change::MaildropGiven given = Given({33, kMail, {0660}, ""});
    given.is_replaced = true;
    Make(kGiven, "");
    folder_.Write(".anna.4711.12", "");
    folder_.Write(".anna.4711.13", "mail");
    folder_.Write(".anna.4712.12", "");
    EXPECT_EQ(GiveBack(given), UsersOutcome::Replaced);
    EXPECT_EQ(Now(), kGiven);
    EXPECT_EQ(ReadDir(folder_ / "").Count(), 3U);
    EXPECT_FALSE(EntryExists(folder_ / ".anna.4711.12"));
}

TEST_F(MaildropReturn, GivesAReplacedOneToItsUserWhereTheRunWasKilledBefore) {
    change::MaildropGiven given = Given({33, kMail, {0660}, ""});
    given.is_replaced = true;
    Make({0, 0, {0600}, ""}, "");
    EXPECT_EQ(GiveBack(given), UsersOutcome::Replaced);
    EXPECT_EQ(Now(), kGiven);
    Make({0, 0, {0640}, ""}, "");  // somebody's doing
    EXPECT_EQ(GiveBack(given), UsersOutcome::Replaced);
    EXPECT_EQ(Now(), (change::Access{0, 0, {0640}, ""}));
}

TEST_F(MaildropReturn, TouchesNothingButAPlainFile) {
    const change::MaildropGiven given = Given({0, 8, {0666}, ""});
    EXPECT_EQ(GiveBack(given), UsersOutcome::Nothing);
    const SString target = folder_.Write("target", "secret\n", 0600);
    ASSERT_EQ(symlink(target.CString(), path_.CString()), 0);
    EXPECT_EQ(GiveBack(given), UsersOutcome::Changed);
    RemoveFile(path_);
    Make(kGiven);
    ASSERT_TRUE(AddName(path_, folder_ / "second"));
    EXPECT_EQ(GiveBack(given), UsersOutcome::Changed);
    EXPECT_EQ(Now(), kGiven);
    RemoveFile(path_);
    ASSERT_EQ(mkfifo(path_.CString(), 0666), 0);
    EXPECT_EQ(GiveBack(given), UsersOutcome::Changed);
}

}  // namespace
