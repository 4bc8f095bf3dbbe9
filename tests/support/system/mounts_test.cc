#include "support/system/mounts.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/temporary_folder.h"

namespace {

const SStringList kLines = {
    "21 1 254:0 / / rw,relatime - ext4 /dev/root rw\n",
    "22 21 254:1 / /srv/disk rw - ext4 /dev/vdb rw\n",
    "23 21 0:40 / /net/home rw - nfs4 server:/home rw\n",
    "24 23 0:41 / /net/home/carla rw shared:7 - fuse.sshfs other:/ rw\n",
    "25 21 0:42 / /net/two\\040words rw - nfs4 server:/two rw\n",
    "nonsense\n",
    "",
};

TEST(Mounts, FindsTheLowestMountPoint) {
    const struct {
        const char* path;
        const char* point;
    } cases[] = {
        {"/", "/"},
        {"/home/anna", "/"},
        {"/srv/disk/anna", "/srv/disk"},
        {"/net/home", "/net/home"},
        {"/net/home/anna", "/net/home"},
        {"/net/home//anna/", "/net/home"},
        {"/net/./home/anna/.plan", "/net/home"},
        {"/net/homes/anna", "/"},
        {"/net/home/carla", "/net/home/carla"},
        {"/net/home/carla/.plan", "/net/home/carla"},
        {"/net/two words/x", "/net/two words"},
        {"/srv/../net/home/anna", "/net/home"},
        {"/../net/home/anna", "/net/home"},
        {"", "/"},
    };
    const Mounts mounts(kLines);
    for (const auto& c : cases) EXPECT_EQ(mounts.PointOf(c.path), c.point) << c.path;
}

TEST(Mounts, FollowsLinksUpToAMountPoint) {
    const TemporaryFolder folder;
    const SString away = folder / "away";
    ASSERT_EQ(symlink("/net/home", away.CString()), 0);
    ASSERT_EQ(symlink("away", (folder / "chain").CString()), 0);
    ASSERT_EQ(symlink("loop", (folder / "loop").CString()), 0);
    const Mounts mounts(kLines);
    EXPECT_EQ(mounts.PointOf(away + "/anna"), "/net/home");
    EXPECT_EQ(mounts.PointOf(folder / "chain/anna"), "/net/home");
    EXPECT_EQ(mounts.PointOf(folder / "loop/anna"), "/");
}

TEST(Mounts, LooksAtNothingBelowAMountThatIsNoDisks) {
    const TemporaryFolder folder;
    ASSERT_EQ(symlink("/net/home", (folder / "link").CString()), 0);
    const SString line = "30 21 0:50 / " + (folder / "") + " rw - nfs4 server:/x rw\n";
    const SString without_slash = line.S("/ rw", " rw");
    EXPECT_EQ(Mounts({kLines[0], without_slash}).PointOf(folder / "link"), (folder / "").S("/\\z", ""));
}

TEST(Mounts, KnowsTheHostsOwn) {
    EXPECT_EQ(Mounts::Now().PointOf("/proc/self"), "/proc");
    EXPECT_EQ(Mounts({}).PointOf("/home/anna"), "/");
}

}  // namespace
