#include "support/system/descriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <utility>

#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

TEST(Descriptor, IsClosedOnExec) {
    const Descriptor file = Descriptor::Open("/dev/null", O_RDONLY);
    EXPECT_NE(fcntl(file.Get(), F_GETFD) & FD_CLOEXEC, 0);
}

TEST(Descriptor, OfAMissingFileIsNone) {
    const TemporaryFolder folder;
    const Descriptor file = Descriptor::Open(folder / "none", O_RDONLY);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(file);
    EXPECT_FALSE(file.Stat());
    EXPECT_FALSE(file.ReadAll());
    EXPECT_FALSE(file.WriteAll("x"));
    EXPECT_FALSE(file.Sync());
}

TEST(Descriptor, IsNoneUntilItIsGivenOne) {
    Descriptor none;
    EXPECT_FALSE(none);
    EXPECT_LT(none.Get(), 0);  // not one of the standard descriptors, which it would close
    EXPECT_TRUE(none.Close());
}

TEST(Descriptor, HasOneOwner) {
    Descriptor first = Descriptor::Open("/dev/null", O_RDONLY);
    const int fd = first.Get();
    Descriptor second = std::move(first);
    EXPECT_EQ(second.Get(), fd);
    Descriptor third = Descriptor::Open("/dev/zero", O_RDONLY);
    const int replaced = third.Get();
    third = std::move(second);
    EXPECT_EQ(third.Get(), fd);
    EXPECT_EQ(fcntl(replaced, F_GETFD), -1);
    EXPECT_TRUE(third.Close());
    EXPECT_FALSE(third);
    EXPECT_TRUE(third.Close());
    EXPECT_EQ(fcntl(fd, F_GETFD), -1);
}

TEST(Descriptor, WritesAndReadsEveryByte) {
    const TemporaryFolder folder;
    SString bytes(std::string("NUL \0 and \xff", 11));
    bytes += SString('x', 200'000);
    const Descriptor written = Descriptor::Open(folder / "file", O_WRONLY | O_CREAT | O_EXCL, 0600);
    EXPECT_TRUE(written.WriteAll(bytes));
    EXPECT_TRUE(written.Sync());
    const Descriptor read = Descriptor::Open(folder / "file", O_RDONLY);
    EXPECT_EQ(read.ReadAll(), bytes);
    EXPECT_EQ(read.ReadAll(), SString());  // from here to the end
    EXPECT_EQ(read.Stat()->st_size, 200'011);
}

TEST(Descriptor, ReadsNoMoreThanItsLimit) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "abcdef");
    for (const size_t limit : {0UL, 1UL, 5UL, 6UL, 7UL}) {
        const Descriptor file = Descriptor::Open(path, O_RDONLY);
        EXPECT_EQ(file.ReadAll(limit), SString(std::string("abcdef").substr(0, limit)));
    }
}

TEST(Descriptor, TellsOfErrors) {
    EXPECT_FALSE(Descriptor::Open("/dev/full", O_WRONLY).WriteAll("x"));
    EXPECT_FALSE(Descriptor::Open("/", O_RDONLY | O_DIRECTORY).ReadAll());
}

TEST(SyncParent, TakesThePathsDirectory) {
    const TemporaryFolder folder;
    EXPECT_TRUE(SyncParent(folder / "file"));
    EXPECT_TRUE(SyncParent(folder / "directory/"));
    EXPECT_TRUE(SyncParent("/tmp"));
    EXPECT_TRUE(SyncParent("/"));
    EXPECT_TRUE(SyncParent("file"));
    EXPECT_FALSE(SyncParent(folder / "none/file"));
    EXPECT_FALSE(SyncDirectory(folder.Write("file", "")));
}

}  // namespace
