#include "install/host/owned_directory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/system/file.h"
#include "support/system/identity.h"
#include "tests/install/record/recording.h"
#include "tests/temporary_folder.h"

namespace {

constexpr uid_t kOwner = 54321;
constexpr gid_t kGroup = 54322;

mode_t Mode(const SString& path) {
    struct stat facts {};
    return lstat(path.CString(), &facts) == 0 ? facts.st_mode & 07777 : 0;
}

bool BelongsToOwner(const SString& path) {
    struct stat facts {};
    return lstat(path.CString(), &facts) == 0 && S_ISDIR(facts.st_mode) && facts.st_uid == kOwner &&
           facts.st_gid == kGroup;
}

NewDirectory Make(const SString& path) {
    return MakeOwnedDirectory(path, 0770, kOwner, kGroup);
}

TEST(MakeOwnedDirectory, MakesItWithItsOwnerAndMode) {
    const TemporaryFolder folder;
    const mode_t mask = umask(007);
    EXPECT_EQ(Make(folder / "mailboxes/"), NewDirectory::Made);
    umask(mask);
    EXPECT_TRUE(BelongsToOwner(folder / "mailboxes"));
    EXPECT_EQ(Mode(folder / "mailboxes"), 0770U);
    EXPECT_FALSE(EntryExists(folder / "mailboxes.new"));
}

TEST(MakeOwnedDirectory, ReplacesNothing) {
    const TemporaryFolder folder;
    folder.Write("file", "kept");
    ASSERT_EQ(symlink("none", (folder / "dangling").CString()), 0);
    ASSERT_TRUE(MakeDir(folder / "directory", 0700));
    for (const char* name : {"file", "dangling", "directory", "none/below"}) {
        EXPECT_EQ(Make(folder / name), NewDirectory::NotMade) << name;
        EXPECT_FALSE(EntryExists(folder / name + ".new")) << name;
    }
    EXPECT_EQ(MapFileRead(folder / "file"), "kept");
    EXPECT_FALSE(FileExists(folder / "none"));
    EXPECT_EQ(Mode(folder / "directory"), 0700U);
}

TEST(MakeOwnedDirectory, RemovesWhatAnEarlierRunLeft) {
    const TemporaryFolder folder;
    ASSERT_TRUE(MakeDir(folder / "mailboxes.new", 0));
    ASSERT_EQ(chmod((folder / "mailboxes.new").CString(), 0770), 0);
    EXPECT_EQ(Make(folder / "mailboxes"), NewDirectory::Made);
    EXPECT_FALSE(EntryExists(folder / "mailboxes.new"));
}

TEST(MakeOwnedDirectory, LeavesOthersWorkAlone) {
    const TemporaryFolder folder;
    ASSERT_TRUE(MakeDir(folder / "full.new", 0770));
    ASSERT_TRUE(MakeDir(folder / "full.new/mail", 0770));
    ASSERT_TRUE(MakeDir(folder / "foreign.new", 0700));
    ASSERT_EQ(symlink("full.new", (folder / "link.new").CString()), 0);
    for (const char* name : {"full", "foreign", "link"}) {
        EXPECT_EQ(Make(folder / name), NewDirectory::Made) << name;
        EXPECT_TRUE(BelongsToOwner(folder / name)) << name;
        EXPECT_TRUE(EntryExists(folder / name + ".new")) << name;
        EXPECT_FALSE(EntryExists(folder / name + ".new1")) << name;
    }
    EXPECT_TRUE(IsDirectory(folder / "full.new/mail"));
}

TEST(OpenOwnEmptyDirectory, RefusesWhatSomebodyElseMayHavePutThere) {
    const TemporaryFolder folder;
    ASSERT_TRUE(MakeDir(folder / "empty", 0770));
    EXPECT_TRUE(OpenOwnEmptyDirectory(folder / "empty"));
    folder.Write("file", "root's");
    ASSERT_EQ(symlink("empty", (folder / "link").CString()), 0);
    ASSERT_TRUE(MakeDir(folder / "full", 0770));
    ASSERT_TRUE(MakeDir(folder / "full/mail", 0770));
    ASSERT_TRUE(MakeDir(folder / "foreign", 0770));
    ASSERT_EQ(chown((folder / "foreign").CString(), kOwner, kGroup), 0);
    for (const char* name : {"file", "link", "full", "foreign", "missing"}) {
        EXPECT_FALSE(OpenOwnEmptyDirectory(folder / name)) << name;
    }
}

TEST(MakeOwnedDirectory, TakesRootsRightsItself) {
    const TemporaryFolder folder;  // root's
    const AsUser owner({kOwner, kGroup, {kGroup}});
    ASSERT_TRUE(owner.IsTaken());
    EXPECT_EQ(Make(folder / "mailboxes"), NewDirectory::Made);
    EXPECT_EQ(geteuid(), kOwner);
}

TEST(MakeOwnedDirectory, IsRecorded) {
    const TemporaryFolder folder;
    const Recording recording;
    const mode_t mask = umask(027);
    EXPECT_EQ(Make(folder / "mailboxes/"), NewDirectory::Made);
    umask(mask);
    const auto made = recording.Only<change::DirectoryMade>();
    EXPECT_EQ(made.path, folder / "mailboxes");
    EXPECT_EQ(made.unfinished, folder / "mailboxes.new");
    EXPECT_EQ(made.access, (change::Access{kOwner, kGroup, {0750}, ""}));
}

}  // namespace
