#include <gtest/gtest.h>

#include "install/record/checksum.h"
#include "support/mail/queue.h"
#include "tests/install/account_database.h"
#include "undo/ways.h"

namespace {

class QueuedMessage : public testing::Test {
  protected:
    QueuedMessage() {
        SControl control;
        control["Function:"] = "Account-Handler";
        EXPECT_TRUE(control.Prepare("2026.AB4711.Notify"));
        site_.Folder().Write("messages/2026.AB4711.Notify-Header", "Date: x\r\n");
        site_.Folder().Write("messages/2026.AB4711.Notify-Body", "text\r\n");
        EXPECT_TRUE(control.Publish());
        change_ = {Path("control/2026.AB4711.Notify-Control"),
                   {control.HeaderPath(), control.BodyPath()},
                   KeyedChecksum(run_.key, MapFileRead(Path("control/2026.AB4711.Notify-Control")))};
        run_.options.accounts = true;
    }
    SString Path(const SString& name) const { return site_.Folder() / name; }
    size_t Files() const { return ReadDir(Path("control")).Count() + ReadDir(Path("messages")).Count(); }

    AccountDatabase site_;
    UndoneRun run_ = {"", "the key", "", "", {}};
    change::MessageQueued change_;
};

TEST_F(QueuedMessage, StaysUnlessAskedFor) {
    run_.options.accounts = false;
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::Kept);
    EXPECT_EQ(LookAt(change_, run_).text,
              "In the queue stays the message 2026.AB4711.Notify (--accounts withdraws it)");
    TakeBack(change_, run_);
    EXPECT_EQ(Files(), 3U);
}

TEST_F(QueuedMessage, IsWithdrawn) {
    EXPECT_EQ(LookAt(change_, run_).text, "Withdraw the message 2026.AB4711.Notify");
    EXPECT_TRUE(TakeBack(change_, run_).left.IsEmpty());
    EXPECT_EQ(Files(), 0U);
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::AsBefore);
}

TEST_F(QueuedMessage, ThatSomebodyChangedStays) {
    site_.Folder().Write("control/2026.AB4711.Notify-Control", "Function: Other\n");
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::Changed);
    EXPECT_EQ(TakeBack(change_, run_).left, change_.control + " was changed since, and stays");
    EXPECT_EQ(Files(), 3U);
}

TEST_F(QueuedMessage, StaysWithoutTheKey) {
    run_.key = "";
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::Unknown);
    TakeBack(change_, run_);
    EXPECT_EQ(Files(), 3U);
}

/// The mail system may still have its text.
TEST_F(QueuedMessage, ThatIsUnderWayIsLeftToTheMailSystem) {
    RemoveFile(change_.control);
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::AsBefore);
    EXPECT_TRUE(TakeBack(change_, run_).left.IsEmpty());
    EXPECT_EQ(Files(), 2U);
}

TEST_F(QueuedMessage, ThatIsDeferredIsNamed) {
    const SString deferred = Path("deferred/Mailer/2026.AB4711.Notify-Control");
    MakeDir(Path("deferred"), 0700);
    MakeDir(Path("deferred/Mailer"), 0700);
    ASSERT_TRUE(Rename(change_.control, deferred));
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::Changed);
    EXPECT_EQ(TakeBack(change_, run_).left,
              "The mail system has deferred the message 2026.AB4711.Notify, which stays: " + deferred);
    EXPECT_TRUE(EntryExists(deferred));
    run_.options.accounts = false;
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::Kept);
}

TEST_F(QueuedMessage, ThatAKilledRunDidNotFinishGoesInAnyCase) {
    run_.options.accounts = false;
    ASSERT_TRUE(Rename(change_.control, Path("control/.2026.AB4711.Notify-Control.4711.12")));
    site_.Folder().Write("messages/.2026.AB4711.Notify-Body.4711.13", "te");
    site_.Folder().Write("messages/.2026.AB4711.Notify-Body.mine", "te");
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::AsLeft);
    EXPECT_TRUE(TakeBack(change_, run_).left.IsEmpty());
    EXPECT_EQ(ReadDir(Path("messages")), Path("messages/.2026.AB4711.Notify-Body.mine"));
    EXPECT_TRUE(ReadDir(Path("control")).IsEmpty());
}

}  // namespace
