#include <unistd.h>

#include <filesystem>

#include "install/record/checksum.h"
#include "support/system/file.h"
#include "tests/undo/way.h"

namespace {

constexpr char kEmulator[] = "../../opt/bin/sendmail";
constexpr char kProgram[] = "program";

SString TextOf(const SString& path) {
    return std::filesystem::read_symlink(path.Bytes()).string();
}

class LinkMade : public testing::Test {
  protected:
    void Link(const SString& text) { ASSERT_EQ(symlink(text.CString(), path.CString()), 0); }
    change::LinkMade Over(const SString& kept, const SString& before = kProgram) {
        return {path, kEmulator, kept, Checksum(before), "", 0, 0};
    }
    change::LinkMade OverNothing() { return {path, kEmulator, "", "", "", 0, 0}; }
    change::LinkMade OverLink() { return {path, kEmulator, "", "", "nowhere", 1001, 1002}; }
    /// Nothing is done, and this is said.
    void ExpectLeft(const change::LinkMade& change, const SString& text) {
        const SStringList entries = ReadDir(folder / ".");
        EXPECT_EQ(LookAt(change, AnyRun()).text, text);
        EXPECT_EQ(StandingOf(change), Standing::Changed);
        TakeBack(change, AnyRun());
        EXPECT_EQ(ReadDir(folder / "."), entries);
    }
    /// Something is done, and this is left.
    void ExpectLeftAfterwards(const change::LinkMade& change, const SString& text) {
        EXPECT_EQ(StandingOf(change), Standing::AsLeft);
        const TakenBack taken = TakeBack(change, AnyRun());
        EXPECT_TRUE(taken.is_whole);
        EXPECT_EQ(taken.left, SStringList(text));
        EXPECT_EQ(StandingOf(change), Standing::Changed);
    }

    TemporaryFolder folder;
    SString path = folder / "sendmail";
    SString backup = path + ".bak";
    SString spare = folder / ".sendmail.undo";
};

TEST_F(LinkMade, GivesItsPlaceToTheProgramBefore) {
    folder.Write("sendmail.bak", kProgram, 04755);
    Link(kEmulator);
    ExpectTakenBack(Over(backup));
    EXPECT_EQ(MapFileRead(path), kProgram);
    EXPECT_EQ(ModeOf(path), 04755U);
    EXPECT_FALSE(EntryExists(backup));
}

TEST_F(LinkMade, GivesItsPlaceToALinkBefore) {
    ASSERT_EQ(symlink("exim", backup.CString()), 0);
    Link(kEmulator);
    ExpectTakenBack(Over(backup, "exim"));
    EXPECT_EQ(TextOf(path), "exim");
}

TEST_F(LinkMade, WasNotMadeYetWhenTheRunWasKilled) {
    folder.Write("sendmail", kProgram);
    EXPECT_EQ(StandingOf(Over(backup)), Standing::AsBefore);
    ASSERT_EQ(link(path.CString(), backup.CString()), 0);
    ExpectTakenBack(Over(backup));
    EXPECT_FALSE(EntryExists(backup)) << "renamed by a second name";
    ASSERT_TRUE(Rename(path, backup));
    ExpectTakenBack(Over(backup));
    EXPECT_EQ(MapFileRead(path), kProgram);
}

TEST_F(LinkMade, StaysWithoutTheBackup) {
    Link(kEmulator);
    ExpectLeft(Over(backup), path + " stays, as its backup " + backup + " is gone");
    RemoveFile(path);
    ExpectLeft(Over(backup), path + " is gone, and its backup " + backup + " is gone");
}

TEST_F(LinkMade, StaysWhereTheBackupWasEdited) {
    folder.Write("sendmail.bak", "patched");
    Link(kEmulator);
    ExpectLeft(Over(backup), path + " stays, as its backup " + backup + " was changed since");
    EXPECT_EQ(MapFileRead(backup), "patched");
    RemoveFile(path);
    ExpectLeft(Over(backup), path + " is gone, and its backup " + backup + " was changed since");
    folder.Write("sendmail", kProgram);
    ExpectLeft(Over(backup), path + " is as before; " + backup + " is left alone");
}

TEST_F(LinkMade, LeavesANewProgramAlone) {
    folder.Write("sendmail.bak", kProgram);
    folder.Write("sendmail", "new one");
    ExpectLeft(Over(backup), path + " is somebody's by now; what stood there before is " + backup);
    EXPECT_EQ(MapFileRead(path), "new one");
    EXPECT_EQ(MapFileRead(backup), kProgram);
    const SString before = path + " is somebody's by now; what stood there before was " + backup + ", which ";
    folder.Write("sendmail.bak", "patched");
    ExpectLeft(Over(backup), before + "was changed since");
    RemoveFile(backup);
    ExpectLeft(Over(backup), before + "is gone");
}

TEST_F(LinkMade, LeavesALinkOfSomebodysAlone) {
    Link("postfix");
    EXPECT_EQ(StandingOf(OverNothing()), Standing::Changed);
    EXPECT_EQ(StandingOf(OverLink()), Standing::Changed);
    EXPECT_EQ(StandingOf(Over(backup)), Standing::Changed);
    EXPECT_EQ(StandingOf(Over(backup, "postfix")), Standing::AsBefore) << "never renamed";
}

TEST_F(LinkMade, IsRemovedWhereNothingWas) {
    EXPECT_EQ(StandingOf(OverNothing()), Standing::AsBefore);
    Link(kEmulator);
    ExpectTakenBack(OverNothing());
    EXPECT_FALSE(EntryExists(path));
}

TEST_F(LinkMade, GivesItsPlaceToADanglingLink) {
    Link(kEmulator);
    ExpectTakenBack(OverLink());
    EXPECT_EQ(TextOf(path), "nowhere");
    EXPECT_EQ(StatusOf(path).st_uid, 1001U);
    EXPECT_EQ(StatusOf(path).st_gid, 1002U);
    EXPECT_FALSE(EntryExists(spare));
    ASSERT_TRUE(RemoveFile(path));
    ExpectTakenBack(OverLink());
}

TEST_F(LinkMade, IsFinishedAfterAKilledUndo) {
    for (const char* text : {"nowhere", kEmulator}) {
        for (const bool is_made : {false, true}) {
            RemoveFile(path);
            Link(kEmulator);
            if (is_made) ExpectTakenBack(OverLink());
            ASSERT_EQ(symlink(text, spare.CString()), 0);
            ExpectTakenBack(OverLink());
            EXPECT_EQ(TextOf(path), "nowhere");
            EXPECT_FALSE(EntryExists(spare));
        }
    }
}

TEST_F(LinkMade, IsFinishedAfterAnUndoThatWasKilledBeforeItRemovedTheLink) {
    folder.Write("sendmail", kProgram);
    ASSERT_EQ(symlink(kEmulator, backup.CString()), 0);
    ExpectTakenBack(Over(backup));
    EXPECT_EQ(MapFileRead(path), kProgram);
    ASSERT_TRUE(Rename(path, backup));
    ASSERT_EQ(symlink(kEmulator, spare.CString()), 0);
    ExpectTakenBack(Over(backup));
    EXPECT_EQ(ReadDir(folder / "."), SStringList(folder / "./sendmail"));
    ASSERT_TRUE(RemoveFile(path));
    ASSERT_EQ(symlink(kEmulator, spare.CString()), 0);
    ExpectTakenBack(OverNothing());
    EXPECT_FALSE(EntryExists(spare));
}

TEST_F(LinkMade, GivesBackWhatAKilledUndoHasTakenAway) {
    const SString somebodys = path + " is somebody's by now; ";
    folder.Write(".sendmail.undo", "new one");
    ExpectLeftAfterwards(OverNothing(), somebodys + "there was nothing before");
    EXPECT_EQ(MapFileRead(path), "new one");
    ASSERT_TRUE(Rename(path, spare));
    folder.Write("sendmail.bak", kProgram);
    ExpectLeftAfterwards(Over(backup), somebodys + "what stood there before is " + backup);
    EXPECT_EQ(MapFileRead(path), "new one");
    ASSERT_TRUE(Rename(path, spare));
    Link("nowhere");
    ASSERT_EQ(lchown(path.CString(), 1001, 1002), 0);
    ExpectLeftAfterwards(OverLink(), somebodys + "it was a link to nowhere");
    EXPECT_EQ(MapFileRead(path), "new one");
    EXPECT_FALSE(EntryExists(spare));
    folder.Write(".sendmail.undo", "newer one");
    ExpectLeft(OverLink(), path + " stays; an interrupted Undo has left another as " + spare);
}

}  // namespace
