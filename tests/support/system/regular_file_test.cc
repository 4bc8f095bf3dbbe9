#include "support/system/regular_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/temporary_folder.h"

namespace {

TEST(OpenRegularFile, OpensNothingElse) {
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo((folder / "fifo").CString(), 0600), 0);
    ASSERT_EQ(mkdir((folder / "directory").CString(), 0700), 0);
    for (const char* name : {"fifo", "directory", "missing"}) {
        for (const Links links : {Links::All, Links::NotAtEnd, Links::NotMagic}) {
            EXPECT_FALSE(OpenRegularFile(folder / name, O_RDONLY, links)) << name;
        }
    }
    EXPECT_FALSE(OpenRegularFile("/dev/null", O_RDONLY, Links::All));
}

TEST(OpenRegularFile, TellsWhatItHasOpened) {
    const TemporaryFolder folder;
    const Descriptor made = Descriptor::Open(folder / "file", O_WRONLY | O_CREAT, 0600);
    ASSERT_TRUE(made.WriteAll("text"));
    const RegularFile file = OpenRegularFile(folder / "file", O_RDONLY, Links::NotMagic);
    ASSERT_TRUE(file);
    EXPECT_EQ(file.status.st_size, 4);
    EXPECT_EQ(file.descriptor.ReadAll(), SString("text"));
    EXPECT_TRUE(IsSameFile(file.status, *made.Stat()));
}

TEST(OpenRegularFile, FollowsTheLinksItIsToldTo) {
    const TemporaryFolder folder;
    const Descriptor made = Descriptor::Open(folder / "file", O_WRONLY | O_CREAT, 0600);
    ASSERT_EQ(symlink("file", (folder / "link").CString()), 0);
    EXPECT_TRUE(OpenRegularFile(folder / "link", O_RDONLY, Links::All));
    EXPECT_TRUE(OpenRegularFile(folder / "link", O_RDONLY, Links::NotMagic));
    EXPECT_FALSE(OpenRegularFile(folder / "link", O_RDONLY, Links::NotAtEnd));

    const SString magic = "/proc/self/fd/" + SString(made.Get());
    EXPECT_TRUE(OpenRegularFile(magic, O_WRONLY, Links::All));
    EXPECT_FALSE(OpenRegularFile(magic, O_WRONLY, Links::NotMagic));
}

TEST(IsSameFile, LooksAtDeviceAndNumber) {
    struct stat one {};
    struct stat other {};
    EXPECT_TRUE(IsSameFile(one, other));
    other.st_dev = 1;
    EXPECT_FALSE(IsSameFile(one, other));
    other = one;
    other.st_ino = 1;
    EXPECT_FALSE(IsSameFile(one, other));
}

}  // namespace
