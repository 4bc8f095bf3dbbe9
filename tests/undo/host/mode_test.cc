#include <unistd.h>

#include "tests/undo/way.h"

namespace {

change::ModeSet Set(const SString& path) {
    return {path, {01777}, {03777}};
}

SString MakeFolder(const TemporaryFolder& folder, mode_t mode) {
    const SString path = folder / "mail";
    mkdir(path.CString(), 0700);
    chmod(path.CString(), mode);
    return path;
}

TEST(ModeSet, IsGivenBack) {
    const TemporaryFolder folder;
    const SString path = MakeFolder(folder, 03777);
    ExpectTakenBack(Set(path + "/"));
    EXPECT_EQ(ModeOf(path), 01777U);
}

TEST(ModeSet, IsGivenBackOverRootsLink) {
    const TemporaryFolder folder;
    const SString path = MakeFolder(folder, 03777);
    ASSERT_EQ(symlink("mail", (folder / "link").CString()), 0);
    ExpectTakenBack(Set(folder / "link/"));
    EXPECT_EQ(ModeOf(path), 01777U);
}

TEST(ModeSet, StaysWhereItWasSetSince) {
    const TemporaryFolder folder;
    const SString path = MakeFolder(folder, 0770);
    const Finding finding = LookAt(Set(path), AnyRun());
    EXPECT_EQ(finding.standing, Standing::Changed);
    EXPECT_EQ(finding.text, "The mode of " + path + " is 770 by now; it was 1777, and the run made it 3777");
    EXPECT_EQ(TakeBack(Set(path), AnyRun()).left, SStringList(finding.text)) << "set after it was looked at";
    EXPECT_EQ(ModeOf(path), 0770U);
    EXPECT_EQ(StandingOf(Set(folder / "missing")), Standing::Changed);
}

TEST(ModeSet, IsNotGivenBackOverAUsersLink) {
    const TemporaryFolder folder;
    MakeFolder(folder, 03777);
    ASSERT_EQ(symlink("mail", (folder / "link").CString()), 0);
    ASSERT_EQ(lchown((folder / "link").CString(), 1001, 1001), 0);
    EXPECT_EQ(StandingOf(Set(folder / "link")), Standing::Unknown);
    EXPECT_FALSE(TakeBack(Set(folder / "link"), AnyRun()).is_whole);
    EXPECT_EQ(ModeOf(folder / "mail"), 03777U);
}

}  // namespace
