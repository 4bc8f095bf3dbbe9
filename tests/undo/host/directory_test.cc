#include <unistd.h>

#include "support/system/file.h"
#include "tests/undo/way.h"

namespace {

constexpr uid_t kOwner = 150;

void Make(const SString& path, uid_t owner = kOwner, mode_t mode = 0770) {
    ASSERT_EQ(mkdir(path.CString(), 0700), 0);
    ASSERT_EQ(chown(path.CString(), owner, owner), 0);
    ASSERT_EQ(chmod(path.CString(), mode), 0);
}

class DirectoryMade : public testing::Test {
  protected:
    TemporaryFolder folder;
    SString path = folder / "boxes";
    change::DirectoryMade made{path + "/", path + ".new", {kOwner, kOwner, {0770}, ""}};
};

TEST_F(DirectoryMade, IsRemovedWhereEmpty) {
    Make(path);
    ExpectTakenBack(made);
    EXPECT_FALSE(EntryExists(path));
}

TEST_F(DirectoryMade, IsRemovedWhereItCouldNotBeGivenAway) {
    Make(path, 0);
    ExpectTakenBack(made);
}

TEST_F(DirectoryMade, IsRemovedWhereItWasLeftUnfinished) {
    for (const uid_t owner : {uid_t{0}, kOwner}) {
        Make(path + ".new", owner);
        ExpectTakenBack(made);
        EXPECT_FALSE(EntryExists(path + ".new"));
    }
}

TEST_F(DirectoryMade, StaysWhereThereIsSomethingInIt) {
    Make(path);
    folder.Write("boxes/anna", "");
    EXPECT_EQ(LookAt(made, AnyRun()).text, "The directory " + path + "/ is not empty any more");
    EXPECT_EQ(StandingOf(made), Standing::Changed);
    EXPECT_TRUE(TakeBack(made, AnyRun()).is_whole);
    EXPECT_TRUE(EntryExists(path));
}

TEST_F(DirectoryMade, StaysWhereItIsSomebodys) {
    Make(path, 1001);
    EXPECT_EQ(StandingOf(made), Standing::Changed);
    ASSERT_EQ(rmdir(path.CString()), 0);
    Make(path, kOwner, 0755);
    EXPECT_EQ(StandingOf(made), Standing::Changed);
    ASSERT_EQ(rmdir(path.CString()), 0);
    ASSERT_EQ(symlink("/etc", path.CString()), 0);
    EXPECT_EQ(StandingOf(made), Standing::Changed);
    TakeBack(made, AnyRun());
    EXPECT_TRUE(EntryExists(path));
}

TEST_F(DirectoryMade, IsGoneWithWhatItWasIn) {
    EXPECT_EQ(StandingOf(made), Standing::AsBefore);
    made.path = folder / "missing/boxes";
    EXPECT_EQ(StandingOf(made), Standing::AsBefore);
}

}  // namespace
