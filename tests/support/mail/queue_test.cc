#include "support/mail/queue.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "support/system/descriptor.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

class Queue : public testing::Test {
  protected:
    Queue() {
        PutEnv("TernHarbor", folder_ / "data");
        PutEnv("ModuleName", "Install");
        for (const char* name : {"data", "data/control", "data/messages"}) MakeDir(folder_ / name, 0770);
    }

    SStringList AllFiles() const {
        SStringList names = BaseName(ReadDir(folder_ / "data/control"), "");
        names.Push(BaseName(ReadDir(folder_ / "data/messages"), ""));
        names.Sort();
        return names;
    }

    TemporaryFolder folder_;
};

TEST_F(Queue, PlacesAStemInTheControlDirectory) {
    SControl control;
    control["Function:"] = "Account-Manager";
    control["Priority:"] = "1";
    EXPECT_TRUE(control.Write("Stem.1"));
    EXPECT_EQ(control.GetFilename(), "Stem.1");
    EXPECT_EQ(MapFileRead(folder_ / "data/control/Stem.1-Control"),
              "Function: Account-Manager\nPriority: 1\n");
}

TEST_F(Queue, TakesANameWithASlashForThePath) {
    const SString path = folder_ / "other-Control";
    SControl control;
    control["Priority:"] = "1";
    control.PutFilename(path);
    EXPECT_TRUE(control.Write());
    EXPECT_EQ(control.GetFilename(), "other");
    EXPECT_EQ(MapFileRead(path), "Priority: 1\n");
    control.PutFilename("/somewhere/else");
    EXPECT_EQ(control.GetFilename(), "else");
}

TEST_F(Queue, PlacesAHeaderInTheMessagesDirectoryAlways) {
    ASSERT_TRUE(MakeDir(folder_ / "data/messages/sub", 0770));
    SHeader header;
    header["Subject:"] = "one";
    EXPECT_TRUE(header.Write("Stem"));
    EXPECT_EQ(MapFileRead(folder_ / "data/messages/Stem-Header"), "Subject: one\r\n");
    EXPECT_TRUE(header.Write("/sub/Stem"));
    EXPECT_EQ(header.GetFilename(), "Stem");
    EXPECT_EQ(MapFileRead(folder_ / "data/messages/sub/Stem-Header"), "Subject: one\r\n");
}

TEST_F(Queue, ReadsBackWhatItWrote) {
    SControl written;
    written["Z:"] = SStringList({"", " one", "two "});
    written["A:"] = SStringList();
    EXPECT_TRUE(written.Write("Stem"));
    SControl read;
    read["Old:"] = "gone";
    EXPECT_TRUE(read.Read("Stem"));
    EXPECT_EQ(read.Keys(), SStringList({"Z:", "A:"}));
    EXPECT_EQ(read.Get("Z:"), written.Get("Z:"));

    SHeader header;
    header["To:"] = SStringList({"one", "two"});
    EXPECT_TRUE(header.Write("Stem"));
    SHeader again;
    EXPECT_TRUE(again.Read("Stem"));
    EXPECT_EQ(again.Get("To:"), header.Get("To:"));
}

TEST_F(Queue, ReadsNothingButAWholeRegularFile) {
    folder_.Write("data/control/Cut-Control", "Priority: 1");
    ASSERT_EQ(mkfifo((folder_ / "data/control/Fifo-Control").CString(), 0600), 0);
    SControl control;
    control["Kept:"] = "1";
    EXPECT_FALSE(control.Read("Missing"));
    EXPECT_FALSE(control.Read("Cut"));
    EXPECT_FALSE(control.Read("Fifo"));
    EXPECT_FALSE(control.Read(folder_ / "missing/Stem-Control"));
    EXPECT_EQ(control.Keys(), SStringList("Kept:"));
}

TEST_F(Queue, TakesTheDirectoriesWhenAnObjectIsMade) {
    SControl before;
    PutEnv("TernHarbor", folder_ / "elsewhere");
    SControl after;
    EXPECT_TRUE(before.Write("Stem"));
    EXPECT_FALSE(after.Write("Stem"));
    EXPECT_TRUE(FileExists(folder_ / "data/control/Stem-Control"));
}

TEST_F(Queue, DoesNotWriteWhatCouldNotBeReadBack) {
    SControl control;
    control["Priority:"] = "1\n2";
    EXPECT_FALSE(control.Write("Stem"));
    EXPECT_TRUE(AllFiles().IsEmpty());
}

TEST_F(Queue, IsNotPreparedWhereItCouldNotBeWrittenWhole) {
    SControl control;
    control["Priority:"] = SString('1', 5000);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    const rlimit full{4096, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
    const bool is_prepared = control.Prepare("Stem");
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    signal(SIGXFSZ, handler);
    EXPECT_FALSE(is_prepared);
    EXPECT_FALSE(control.Publish());
    EXPECT_TRUE(AllFiles().IsEmpty());
}

TEST_F(Queue, MakesAMessageExistOnlyWhenItIsPublished) {
    SControl control;
    control["Priority:"] = "1";
    EXPECT_FALSE(control.Publish());
    EXPECT_TRUE(control.Prepare("Stem"));
    EXPECT_FALSE(EntryExists(folder_ / "data/control/Stem-Control"));
    EXPECT_TRUE(control.Publish());
    EXPECT_TRUE(EntryExists(folder_ / "data/control/Stem-Control"));
    EXPECT_FALSE(control.Publish());
}

TEST_F(Queue, LeavesNothingOfWhatIsNotPublished) {
    {
        SControl control;
        control["Priority:"] = "1";
        EXPECT_TRUE(control.Prepare("Gone"));
    }
    SControl control;
    EXPECT_TRUE(control.Prepare("Renamed"));
    control.PutFilename("Other");
    EXPECT_FALSE(control.Publish());
    EXPECT_TRUE(AllFiles().IsEmpty());
}

TEST_F(Queue, RemovesAllFilesOfAMessageAndNoOthers) {
    for (const char* name : {"control/A-Control", "messages/A-Header", "messages/A-Body", "control/B-Control",
                             "messages/B-Body", "messages/-Body"}) {
        folder_.Write(SString("data/") + name, "x\n");
    }
    SControl control;
    control.RemoveMessage();  // of no name
    control.PutFilename("A");
    control.RemoveMessage();
    EXPECT_EQ(AllFiles(), SStringList({"-Body", "B-Body", "B-Control"}));

    EXPECT_TRUE(control.Prepare("C"));
    control.RemoveMessage();
    EXPECT_FALSE(control.Publish());
    EXPECT_EQ(AllFiles().Count(), 3U);
}

TEST_F(Queue, RemovesAMessageThatIsAsMeant) {
    SControl control;
    control["Function:"] = "x";
    EXPECT_TRUE(control.Write("A"));
    folder_.Write("data/messages/A-Body", "x\n");
    EXPECT_FALSE(control.RemoveMessageIf([](const SString&) { return false; }));
    EXPECT_EQ(AllFiles().Count(), 2U);
    {
        const Descriptor other = Descriptor::Open(folder_ / "data/control", O_RDONLY);
        ASSERT_EQ(flock(other.Get(), LOCK_EX), 0);
        EXPECT_FALSE(control.RemoveMessageIf([](const SString&) { return true; }));
    }
    EXPECT_TRUE(
        control.RemoveMessageIf([](const SString& bytes) { return bytes == "12:Function: x\n2:x\n"; }));
    EXPECT_TRUE(AllFiles().IsEmpty());
    EXPECT_FALSE(control.RemoveMessageIf([](const SString&) { return true; }));
}

TEST(MessageBytes, TellMessagesApart) {
    EXPECT_EQ(MessageBytes({"ab", "", std::string("c\0", 2)}), std::string("2:ab0:2:c\0", 10));
    EXPECT_NE(MessageBytes({"a", "b"}), MessageBytes("a1:b"));
    EXPECT_NE(MessageBytes({"a", "bc"}), MessageBytes({"ab", "c"}));
}

TEST(TakeMessageBytes, CopiesNoFile) {
    const std::string file = "Function: x\n";
    bool is_handed_over = false;
    TakeMessageBytes({file}, [&](std::string_view piece) { is_handed_over |= piece.data() == file.data(); });
    EXPECT_TRUE(is_handed_over);
}

TEST_F(Queue, ReadsTheFilesThatAMessageHas) {
    SControl control;
    control.PutFilename("A");
    folder_.Write("data/messages/A-Body", "b\n");
    EXPECT_FALSE(control.ReadMessage());
    control["Function:"] = "x";
    EXPECT_TRUE(control.Write());
    folder_.Write("data/messages/A-Header", "h\n");
    EXPECT_EQ(control.ReadMessage(), MessageBytes({"Function: x\n", "h\n", "b\n"}));
    RemoveFile(folder_ / "data/messages/A-Header");
    EXPECT_EQ(control.ReadMessage(), MessageBytes({"Function: x\n", "b\n"}));
    RemoveFile(folder_ / "data/messages/A-Body");
    EXPECT_EQ(control.ReadMessage(), MessageBytes("Function: x\n"));
    ASSERT_EQ(mkfifo((folder_ / "data/messages/A-Body").CString(), 0600), 0);
    EXPECT_FALSE(control.ReadMessage());
}

TEST_F(Queue, WaitsForAnotherProcessesLock) {
    Descriptor other = Descriptor::Open(folder_ / "data/control", O_RDONLY);
    ASSERT_EQ(flock(other.Get(), LOCK_EX), 0);
    std::jthread release([&other] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        other.Close();
    });
    SControl control;
    control["Priority:"] = "1";
    EXPECT_TRUE(control.Write("Stem"));
    EXPECT_TRUE(FileExists(folder_ / "data/control/Stem-Control"));
}

TEST_F(Queue, DoesNotWaitForEverAndReadsBesideAReader) {
    SControl control;
    control["Priority:"] = "1";
    ASSERT_TRUE(control.Write("Stem"));
    Descriptor other = Descriptor::Open(folder_ / "data/control", O_RDONLY);
    ASSERT_EQ(flock(other.Get(), LOCK_SH), 0);
    EXPECT_TRUE(control.Read("Stem"));
    control["Priority:"] = "2";
    EXPECT_FALSE(control.Write("Stem"));
    EXPECT_TRUE(control.Read("Stem"));
    EXPECT_EQ(control.Get("Priority:"), "1");
    EXPECT_EQ(AllFiles().Count(), 1U);
}

TEST_F(Queue, PublishesANewMessageWithoutTheLock) {
    Descriptor other = Descriptor::Open(folder_ / "data/control", O_RDONLY);
    ASSERT_EQ(flock(other.Get(), LOCK_EX), 0);
    SControl control;
    control["Priority:"] = "1";
    EXPECT_TRUE(control.Write("Stem"));
    EXPECT_EQ(MapFileRead(folder_ / "data/control/Stem-Control"), "Priority: 1\n");
    EXPECT_EQ(AllFiles().Count(), 1U);
}

TEST_F(Queue, KeepsAMessagesFileNameAsGiven) {
    SMessage message;
    message.PutFilename("a/b-Body");
    EXPECT_EQ(message.GetFilename(), "a/b-Body");
}

}  // namespace
