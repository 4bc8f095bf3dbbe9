#include <unistd.h>

#include "install/host/host_file.h"
#include "install/host/rewrite_note.h"
#include "install/record/record.h"
#include "support/system/file.h"
#include "tests/undo/way.h"

namespace {

constexpr char kOld[] = "smtp\nfinger\n";
constexpr char kNew[] = "#smtp\n#finger\n";

class HostFileRewritten : public testing::Test {
  protected:
    void ExpectBack(mode_t mode = 0644) {
        ExpectTakenBack(rewritten);
        EXPECT_EQ(MapFileRead(path), kOld);
        EXPECT_EQ(ModeOf(path), mode);
        EXPECT_EQ(ReadDir(folder / "."), SStringList(folder / "./inetd.conf"));
    }

    TemporaryFolder folder;
    SString path = folder / "inetd.conf";
    change::HostFileRewritten rewritten{path, path + ".bak", {0644}, Checksum(kOld), Checksum(kNew)};
};

TEST_F(HostFileRewritten, HasItsOldText) {
    folder.Write("inetd.conf", kNew);
    folder.Write("inetd.conf.bak", kOld);
    const ino_t number = StatusOf(path).st_ino;
    EXPECT_EQ(LookAt(rewritten, AnyRun()).text, "Put " + path + " back from " + path + ".bak");
    ExpectBack();
    EXPECT_EQ(StatusOf(path).st_ino, number) << "rewritten in place";
}

TEST_F(HostFileRewritten, KeepsItsReadOnlyMode) {
    folder.Write("inetd.conf", kNew, 0444);
    folder.Write("inetd.conf.bak", kOld, 0444);
    ExpectBack(0444);
}

TEST_F(HostFileRewritten, WasNotTouchedByAKilledRun) {
    folder.Write("inetd.conf", kOld);
    EXPECT_EQ(StandingOf(rewritten), Standing::AsBefore);
    for (const char* piece : {"", "smtp\nfi", kOld}) {
        folder.Write("inetd.conf.bak", piece);
        ExpectBack();
    }
    folder.Write("inetd.conf.bak", kOld);
    folder.Write(".inetd.conf.rewrite.new", "420 1", 0600);
    ExpectBack();
    folder.Write("inetd.conf.bak", kOld);
    ASSERT_TRUE(WriteNote(path, {0644, kOld, kNew}));
    ExpectBack();
}

TEST_F(HostFileRewritten, WasCutByAKilledRun) {
    for (const char* piece : {"", "#smtp\n#f", "smt", kNew, kOld}) {
        for (const mode_t mode : {0444U, 0644U}) {
            folder.Write("inetd.conf", piece, mode | 0200);
            folder.Write("inetd.conf.bak", kOld);
            ASSERT_TRUE(WriteNote(path, {mode, kOld, kNew}));
            ExpectBack(mode);
        }
    }
}

TEST_F(HostFileRewritten, IsFinishedAfterAKilledUndo) {
    for (const char* piece : {"", "smtp\n", kNew, kOld}) {
        folder.Write("inetd.conf", piece);
        folder.Write("inetd.conf.bak", kOld);
        ASSERT_TRUE(WriteNote(path, {0644, kNew, kOld}));
        ExpectBack();
    }
}

TEST_F(HostFileRewritten, IsFinishedByInstallAfterAKilledUndo) {
    folder.Write("inetd.conf", "smt");
    folder.Write("inetd.conf.bak", kOld);
    ASSERT_TRUE(WriteNote(path, {0644, kNew, kOld}));
    EXPECT_TRUE(FinishRewrite(path));
    EXPECT_EQ(MapFileRead(path), kOld);
}

TEST_F(HostFileRewritten, IsPutBackAfterInetdWasTold) {
    folder.Write("inetd.conf", kNew);
    folder.Write("inetd.conf.bak", kOld);
    ASSERT_TRUE(WriteNote(path, {0644, kOld, kNew}));
    ASSERT_TRUE(MarkWritten(path));
    ExpectBack();
}

TEST_F(HostFileRewritten, IsPutBackFromTheNoteWithoutTheBackup) {
    folder.Write("inetd.conf", kNew);
    ASSERT_TRUE(WriteNote(path, {0644, kOld, kNew}));
    EXPECT_EQ(LookAt(rewritten, AnyRun()).text, "Put " + path + " back from the note beside it");
    ExpectBack();
}

TEST_F(HostFileRewritten, StaysWhereItWasEdited) {
    folder.Write("inetd.conf", SString(kNew) + "echo\n");
    folder.Write("inetd.conf.bak", kOld);
    const Finding finding = LookAt(rewritten, AnyRun());
    EXPECT_EQ(finding.standing, Standing::Changed);
    EXPECT_EQ(finding.text, path + " was edited since; its old text is " + path + ".bak");
    TakeBack(rewritten, AnyRun());
    EXPECT_EQ(MapFileRead(path), SString(kNew) + "echo\n");
    EXPECT_EQ(MapFileRead(path + ".bak"), kOld);
}

TEST_F(HostFileRewritten, StaysWithoutItsOldText) {
    folder.Write("inetd.conf", kNew);
    EXPECT_EQ(StandingOf(rewritten), Standing::Changed);
    folder.Write("inetd.conf.bak", "something else");
    EXPECT_EQ(LookAt(rewritten, AnyRun()).text,
              path + " stays, as its backup " + path + ".bak is gone or was changed");
    RemoveFile(path);
    EXPECT_EQ(StandingOf(rewritten), Standing::Changed);
}

TEST_F(HostFileRewritten, IsLeftToTheRunWhoseRewriteWasCut) {
    folder.Write("inetd.conf", kNew);
    folder.Write("inetd.conf.bak", kOld);
    ASSERT_TRUE(WriteNote(path, {0644, kNew, "another"}));
    EXPECT_EQ(StandingOf(rewritten), Standing::Unknown);
}

TEST_F(HostFileRewritten, IsNotFollowedOverALink) {
    folder.Write("other", kNew);
    folder.Write("inetd.conf.bak", kOld);
    ASSERT_EQ(symlink("other", path.CString()), 0);
    EXPECT_EQ(StandingOf(rewritten), Standing::Changed);
    TakeBack(rewritten, AnyRun());
    EXPECT_EQ(MapFileRead(folder / "other"), kNew);
}

}  // namespace
