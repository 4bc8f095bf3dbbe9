#include <unistd.h>

#include <filesystem>

#include "support/system/file.h"
#include "tests/undo/way.h"

namespace {

constexpr char kEmulator[] = "../../opt/bin/sendmail";

SString TextOf(const SString& path) {
    return std::filesystem::read_symlink(path.Bytes()).string();
}

class LinkMade : public testing::Test {
  protected:
    void Link(const SString& text) { ASSERT_EQ(symlink(text.CString(), path.CString()), 0); }
    change::LinkMade Over(const SString& kept) { return {path, kEmulator, kept, "", 0, 0}; }
    change::LinkMade OverLink() { return {path, kEmulator, "", "nowhere", 1001, 1002}; }

    TemporaryFolder folder;
    SString path = folder / "sendmail";
    SString backup = path + ".bak";
};

TEST_F(LinkMade, GivesItsPlaceToTheProgramBefore) {
    folder.Write("sendmail.bak", "program", 04755);
    Link(kEmulator);
    ExpectTakenBack(Over(backup));
    EXPECT_EQ(MapFileRead(path), "program");
    EXPECT_EQ(ModeOf(path), 04755U);
    EXPECT_FALSE(EntryExists(backup));
}

TEST_F(LinkMade, GivesItsPlaceToALinkBefore) {
    ASSERT_EQ(symlink("exim", backup.CString()), 0);
    Link(kEmulator);
    ExpectTakenBack(Over(backup));
    EXPECT_EQ(TextOf(path), "exim");
}

TEST_F(LinkMade, WasNotMadeYetWhenTheRunWasKilled) {
    folder.Write("sendmail.bak", "program");
    ExpectTakenBack(Over(backup));
    EXPECT_EQ(MapFileRead(path), "program");
}

TEST_F(LinkMade, StaysWithoutTheBackup) {
    Link(kEmulator);
    const Finding finding = LookAt(Over(backup), AnyRun());
    EXPECT_EQ(finding.standing, Standing::Changed);
    EXPECT_EQ(finding.text, path + " stays, as its backup " + backup + " is gone");
    TakeBack(Over(backup), AnyRun());
    EXPECT_EQ(TextOf(path), kEmulator);
}

TEST_F(LinkMade, LeavesANewProgramAlone) {
    folder.Write("sendmail.bak", "program");
    folder.Write("sendmail", "new one");
    const Finding finding = LookAt(Over(backup), AnyRun());
    EXPECT_EQ(finding.standing, Standing::Changed);
    EXPECT_EQ(finding.text, path + " is somebody's by now; what stood there before is " + backup);
    TakeBack(Over(backup), AnyRun());
    EXPECT_EQ(MapFileRead(path), "new one");
    EXPECT_EQ(MapFileRead(backup), "program");
}

TEST_F(LinkMade, LeavesALinkOfSomebodysAlone) {
    Link("postfix");
    EXPECT_EQ(StandingOf(Over("")), Standing::Changed);
    EXPECT_EQ(StandingOf(OverLink()), Standing::Changed);
    EXPECT_EQ(StandingOf(Over(backup)), Standing::AsBefore) << "never renamed";
}

TEST_F(LinkMade, IsRemovedWhereNothingWas) {
    EXPECT_EQ(StandingOf(Over("")), Standing::AsBefore);
    Link(kEmulator);
    ExpectTakenBack(Over(""));
    EXPECT_FALSE(EntryExists(path));
}

TEST_F(LinkMade, GivesItsPlaceToADanglingLink) {
    ASSERT_EQ(symlink("left", (folder / ".sendmail.undo").CString()), 0);
    Link(kEmulator);
    ExpectTakenBack(OverLink());
    EXPECT_EQ(TextOf(path), "nowhere");
    EXPECT_EQ(StatusOf(path).st_uid, 1001U);
    EXPECT_EQ(StatusOf(path).st_gid, 1002U);
    EXPECT_FALSE(EntryExists(folder / ".sendmail.undo"));
    ASSERT_TRUE(RemoveFile(path));
    ExpectTakenBack(OverLink());
}

}  // namespace
