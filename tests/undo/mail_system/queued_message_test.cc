#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <chrono>
#include <functional>
#include <thread>

#include "install/record/checksum.h"
#include "support/mail/queue.h"
#include "support/system/descriptor.h"
#include "tests/install/account_database.h"
#include "undo/ways.h"

namespace {

const SString kHeader = "messages/2026.AB4711.Notify-Header";
const SString kBody = "messages/2026.AB4711.Notify-Body";

class QueuedMessage : public testing::Test {
  protected:
    QueuedMessage() {
        SControl control;
        control["Function:"] = "Account-Handler";
        EXPECT_TRUE(control.Prepare("2026.AB4711.Notify"));
        site_.Folder().Write(kHeader, "Date: x\r\n");
        site_.Folder().Write(kBody, "text\r\n");
        EXPECT_TRUE(control.Publish());
        const SString bytes = MessageBytes({"Function: Account-Handler\n", "Date: x\r\n", "text\r\n"});
        change_ = {Path("control/2026.AB4711.Notify-Control"),
                   {Path(kHeader), Path(kBody)},
                   KeyedChecksum(run_.key, bytes)};
        run_.options.accounts = true;
    }
    SString Path(const SString& name) const { return site_.Folder() / name; }
    void ExpectToStay(const SString& left) {
        EXPECT_EQ(LookAt(change_, run_).standing, Standing::Changed);
        EXPECT_EQ(TakeBack(change_, run_).left, left);
    }
    /// Somebody who has the queue's lock does the work while Undo waits for that.
    TakenBack TakeBackDuring(const std::function<void()>& work) {
        Descriptor other = Descriptor::Open(Path("control"), O_RDONLY);
        EXPECT_EQ(flock(other.Get(), LOCK_EX), 0);
        const std::jthread worker([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            work();
            other.Close();
        });
        return TakeBack(change_, run_);
    }
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
    ExpectToStay(change_.control + " or its text in " + Path("messages/") + " was changed since, and stays");
    EXPECT_EQ(Files(), 3U);
}

TEST_F(QueuedMessage, WhoseTextSomebodyChangedStays) {
    const SString left =
        change_.control + " or its text in " + Path("messages/") + " was changed since, and stays";
    site_.Folder().Write(kBody, "other\r\n");
    ExpectToStay(left);
    site_.Folder().Write(kBody, "text\r\n");
    site_.Folder().Write(kHeader, "Date: y\r\n");
    ExpectToStay(left);
    site_.Folder().Write(kHeader, "Date: x\r\nte");
    site_.Folder().Write(kBody, "xt\r\n");
    ExpectToStay(left);
    EXPECT_EQ(Files(), 3U);
}

TEST_F(QueuedMessage, WhoseTextCannotBeReadStays) {
    RemoveFile(Path(kBody));
    ASSERT_TRUE(MakeDir(Path(kBody), 0700));
    ExpectToStay(change_.control + " or its text in " + Path("messages/") + " was changed since, and stays");
    EXPECT_EQ(Files(), 3U);
}

TEST_F(QueuedMessage, WhoseTextIsGoneStays) {
    RemoveFile(Path(kBody));
    ExpectToStay(change_.control + " stays, as its text is gone: " + Path(kBody));
    EXPECT_EQ(Files(), 2U);
}

TEST_F(QueuedMessage, OfWhichARecordKnowsOnlyTheControlFileStays) {
    change_.digest = KeyedChecksum(run_.key, MapFileRead(change_.control));
    ExpectToStay(change_.control + " or its text in " + Path("messages/") + " was changed since, and stays");
    EXPECT_EQ(Files(), 3U);
}

TEST_F(QueuedMessage, WithoutATextIsItsControlFileAlone) {
    RemoveFile(Path(kHeader));
    RemoveFile(Path(kBody));
    change_.text = {};
    change_.digest = KeyedChecksum(run_.key, MessageBytes("Function: Account-Handler\n"));
    site_.Folder().Write(kBody, "mine\r\n");
    ExpectToStay(change_.control + " was changed since, and stays");
    RemoveFile(Path(kBody));
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::AsLeft);
    EXPECT_TRUE(TakeBack(change_, run_).left.IsEmpty());
    EXPECT_EQ(Files(), 0U);
}

TEST_F(QueuedMessage, ThatTheMailSystemHasLockedStays) {
    const Descriptor other = Descriptor::Open(Path("control"), O_RDONLY);
    ASSERT_EQ(flock(other.Get(), LOCK_EX), 0);
    EXPECT_FALSE(TakeBack(change_, run_).is_whole);
    EXPECT_EQ(Files(), 3U);
}

/// The control file first, and while Undo waits for the lock.
TEST_F(QueuedMessage, ThatTheMailSystemTakesMeanwhileIsLeftToIt) {
    const TakenBack taken = TakeBackDuring([&] { RemoveFile(change_.control); });
    EXPECT_TRUE(taken.is_whole);
    EXPECT_TRUE(taken.left.IsEmpty());
    EXPECT_EQ(Files(), 2U);
}

TEST_F(QueuedMessage, ThatSomebodyChangesMeanwhileStays) {
    const TakenBack taken = TakeBackDuring([&] { site_.Folder().Write(kBody, "other\r\n"); });
    EXPECT_TRUE(taken.is_whole);
    EXPECT_EQ(taken.left,
              change_.control + " or its text in " + Path("messages/") + " was changed since, and stays");
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
