#include "install/host/sendmail.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/system/file.h"
#include "tests/install/record/recording.h"
#include "tests/temporary_folder.h"

namespace {

SStringList Numbered(int count) {
    SStringList lines;
    for (int i = 1; i <= count; ++i) lines.Push("line " + SString(i) + "\n");
    return lines;
}

TEST(SendmailProcesses, EndInItsName) {
    EXPECT_EQ(SendmailProcesses(
                  {"5 sendmail", "123 sendmail", "124 xsendmail", "125 sendmail-mta", "126 Sendmail"}),
              SStringList({"5 sendmail", "123 sendmail", "124 xsendmail"}));
}

TEST(EmulatorLink, ClimbsToTheRoot) {
    EXPECT_EQ(EmulatorLink("/opt/tern.harbor/"), "../../opt/tern.harbor/bin/sendmail");
}

TEST(IsEmptyQueue, KnowsBothReports) {
    const SString directory = "/var/spool/mqueue is empty\n";
    const SString total = "\t\tTotal requests: 0\n";
    EXPECT_TRUE(IsEmptyQueue({}));
    EXPECT_TRUE(IsEmptyQueue({"Mail queue is empty\n"}));
    EXPECT_TRUE(IsEmptyQueue({"anything at all"}));
    EXPECT_TRUE(IsEmptyQueue({directory, total}));
    EXPECT_FALSE(IsEmptyQueue({total, directory}));
    EXPECT_FALSE(IsEmptyQueue({directory, "\t\tTotal requests: 01\n"}));
    EXPECT_FALSE(IsEmptyQueue({directory, "\t\tTotal requests: 1\n"}));
    EXPECT_FALSE(IsEmptyQueue({directory, directory}));
    EXPECT_FALSE(IsEmptyQueue({directory, total, "\n"}));
    EXPECT_FALSE(IsEmptyQueue({"one\n", "two\n"}));
}

TEST(CutListing, ShowsTwentyLinesWhole) {
    EXPECT_EQ(CutListing({}), SStringList());
    EXPECT_EQ(CutListing(Numbered(20)), Numbered(20));
}

TEST(CutListing, ShowsFifteenOfMore) {
    for (const int count : {21, 100}) {
        SStringList expected = Numbered(15);
        expected.Push("\n");
        expected.Push("[" + SString(count - 15) + " more lines deleted]\n");
        EXPECT_EQ(CutListing(Numbered(count)), expected);
    }
}

TEST(LeadsTo, FollowsLinksOnBothSides) {
    const TemporaryFolder folder;
    const SString emulator = folder.Write("emulator", "");
    const SString other = folder.Write("other", "");
    ASSERT_EQ(symlink("emulator", (folder / "link").CString()), 0);
    ASSERT_EQ(symlink("link", (folder / "chain").CString()), 0);
    ASSERT_EQ(symlink("nothing", (folder / "dangling").CString()), 0);
    EXPECT_TRUE(LeadsTo(folder / "chain", emulator));
    EXPECT_TRUE(LeadsTo(emulator, folder / "link"));
    EXPECT_FALSE(LeadsTo(other, emulator));
    EXPECT_FALSE(LeadsTo(folder / "dangling", folder / "dangling"));
}

TEST(MakeLink, TakesThePlaceOfADanglingLinkOnly) {
    const TemporaryFolder folder;
    const SString path = folder / "sendmail";
    EXPECT_TRUE(MakeLink(path, "first"));
    EXPECT_EQ(LinkText(path), "first");
    EXPECT_TRUE(MakeLink(path, "second"));
    EXPECT_EQ(LinkText(path), "second");
    const SString file = folder.Write("file", "program");
    EXPECT_FALSE(MakeLink(file, "third"));
    EXPECT_EQ(MapFileRead(file), "program");
    EXPECT_FALSE(MakeLink(folder / "no/such/directory", "fourth"));
}

TEST(ReplaceByLink, KeepsTheProgramUnderTheFirstFreeName) {
    const TemporaryFolder folder;
    const SString path = folder.Write("sendmail", "program", 04555);
    folder.Write("sendmail.bak", "older");
    ASSERT_EQ(symlink("nothing", (folder / "sendmail.bak1").CString()), 0);
    EXPECT_TRUE(ReplaceByLink(path, "../emulator"));
    EXPECT_EQ(LinkText(path), "../emulator");
    EXPECT_EQ(MapFileRead(folder / "sendmail.bak"), "older");
    EXPECT_EQ(LinkText(folder / "sendmail.bak1"), "nothing");
    EXPECT_EQ(MapFileRead(folder / "sendmail.bak2"), "program");
    struct stat status {};
    ASSERT_EQ(stat((folder / "sendmail.bak2").CString(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 04555U);
}

TEST(ReplaceByLink, MovesALinkAsALink) {
    const TemporaryFolder folder;
    const SString program = folder.Write("program", "program");
    ASSERT_EQ(symlink("program", (folder / "sendmail").CString()), 0);
    EXPECT_TRUE(ReplaceByLink(folder / "sendmail", "emulator"));
    EXPECT_EQ(LinkText(folder / "sendmail.bak"), "program");
    EXPECT_EQ(MapFileRead(program), "program");
}

TEST(ReplaceByLink, FailsWhereNothingStands) {
    const TemporaryFolder folder;
    EXPECT_FALSE(ReplaceByLink(folder / "sendmail", "emulator"));
    EXPECT_TRUE(ReadDir(folder / "").IsEmpty());
}

TEST(MakeLink, IsRecordedWithTheDanglingLink) {
    const TemporaryFolder folder;
    const SString path = folder / "sendmail";
    ASSERT_EQ(symlink("gone", path.CString()), 0);
    ASSERT_EQ(lchown(path.CString(), 12, 34), 0);
    const Recording recording;
    EXPECT_TRUE(MakeLink(path, "new"));
    const auto made = recording.Only<change::LinkMade>();
    EXPECT_EQ(made.path, path);
    EXPECT_EQ(made.link, "new");
    EXPECT_EQ(made.backup, "");
    EXPECT_EQ(made.old_link, "gone");
    EXPECT_EQ(made.old_owner, 12U);
    EXPECT_EQ(made.old_group, 34U);
}

TEST(ReplaceByLink, IsRecordedWithTheBackup) {
    const TemporaryFolder folder;
    const SString path = folder.Write("sendmail", "x");
    folder.Write("sendmail.bak", "y");
    const Recording recording;
    EXPECT_TRUE(ReplaceByLink(path, "new"));
    const auto made = recording.Only<change::LinkMade>();
    EXPECT_EQ(made.backup, path + ".bak1");
    EXPECT_EQ(made.before, Checksum("x"));
}

TEST(ReplaceByLink, IsRecordedWithTheTextOfALink) {
    const TemporaryFolder folder;
    folder.Write("program", "x");
    ASSERT_EQ(symlink("program", (folder / "sendmail").CString()), 0);
    const Recording recording;
    EXPECT_TRUE(ReplaceByLink(folder / "sendmail", "new"));
    EXPECT_EQ(recording.Only<change::LinkMade>().before, Checksum("program"));
}

}  // namespace
