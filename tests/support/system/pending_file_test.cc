#include "support/system/pending_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "support/system/environment.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

mode_t ModeOf(const SString& path) {
    struct stat status = {};
    return stat(path.CString(), &status) == 0 ? status.st_mode & 07777 : 0;
}

/// No file may grow beyond this for a scope, as on a full disk.
class SizeLimit {
  public:
    explicit SizeLimit(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit = {bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        signal(SIGXFSZ, handler_);
    }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;

  private:
    rlimit before_ = {};
    sighandler_t handler_;
};

TEST(PendingFile, HasItsNameOnlyWhenPublished) {
    const TemporaryFolder folder;
    const SString path = folder / "file";
    PendingFile file(path);
    EXPECT_TRUE(file.IsOpen());
    EXPECT_TRUE(file.Write("one\n"));
    EXPECT_TRUE(file.Write(SString(std::string("two\0\n", 5))));
    EXPECT_FALSE(EntryExists(path));
    EXPECT_TRUE(file.Publish());
    EXPECT_EQ(MapFileRead(path), SString(std::string("one\ntwo\0\n", 9)));
    EXPECT_EQ(ReadDir(folder / "").Count(), 1U);
}

TEST(PendingFile, IsToldByItsName) {
    const TemporaryFolder folder;
    const PendingFile file(folder / "a.b.7");
    const SStringList entries = ReadDir(folder / "");
    ASSERT_EQ(entries.Count(), 1U);
    const auto pending = PendingFrom(entries[0]);
    ASSERT_TRUE(pending);
    EXPECT_EQ(pending->path, folder / "a.b.7");
    EXPECT_EQ(pending->process, getpid());
    for (const char* other :
         {"/x/.name.1", "/x/name.1.2", "/x/.name.1.", "/x/.name.1.2\n", "/x/.1.2", "/x.y/n.1.2"}) {
        EXPECT_FALSE(PendingFrom(other)) << other;
    }
}

TEST(PendingFile, IsGoneWhenItIsNotPublished) {
    const TemporaryFolder folder;
    { EXPECT_TRUE(PendingFile(folder / "file").Write("one\n")); }
    EXPECT_TRUE(ReadDir(folder / "").IsEmpty());
}

TEST(PendingFile, TakesThePlaceOfTheFileThatIsMeantAlone) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "old\n");
    const SString other = folder.Write("other", "other\n");
    struct stat meant = {};
    ASSERT_EQ(stat(other.CString(), &meant), 0);
    {
        PendingFile file(path);
        EXPECT_TRUE(file.Write("new\n"));
        EXPECT_FALSE(file.Replace(meant));
        EXPECT_EQ(MapFileRead(path), "old\n");
        ASSERT_EQ(stat(path.CString(), &meant), 0);
        EXPECT_TRUE(file.Replace(meant));
        EXPECT_EQ(fchmod(file.File().Get(), 0640), 0);
    }
    EXPECT_EQ(MapFileRead(path), "new\n");
    EXPECT_EQ(ModeOf(path), 0640U);
    EXPECT_EQ(ReadDir(folder / "").Count(), 2U);
}

TEST(PendingFile, ReplacesNoFileThatHasGrown) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "");
    struct stat meant {};
    ASSERT_EQ(stat(path.CString(), &meant), 0);
    folder.Write("file", "mail\n");
    EXPECT_FALSE(PendingFile(path).Replace(meant));
    EXPECT_EQ(MapFileRead(path), "mail\n");
    EXPECT_EQ(ReadDir(folder / "").Count(), 1U);
}

TEST(PendingFile, IsOpenToOwnerAndGroupLessTheMask) {
    const TemporaryFolder folder;
    const mode_t before = umask(007);
    EXPECT_TRUE(PendingFile(folder / "file").Publish());
    umask(027);
    EXPECT_TRUE(PendingFile(folder / "closed").Publish());
    umask(before);
    EXPECT_EQ(ModeOf(folder / "file"), 0660U);
    EXPECT_EQ(ModeOf(folder / "closed"), 0640U);
}

TEST(PendingFile, ReplacesAFileAndALinkButNotTheLinksTarget) {
    const TemporaryFolder folder;
    const SString target = folder.Write("target", "target\n");
    ASSERT_EQ(symlink(target.CString(), (folder / "link").CString()), 0);
    PendingFile file(folder / "link");
    EXPECT_TRUE(file.Write("new\n"));
    EXPECT_TRUE(file.Publish());
    EXPECT_EQ(MapFileRead(target), "target\n");
    EXPECT_EQ(MapFileRead(folder / "link"), "new\n");
}

TEST(PendingFile, TakesAnotherNameBesideWhatAKilledProcessLeft) {
    const TemporaryFolder folder;
    const SString left = folder.Write(".file." + ProcessIdString() + ".0", "left\n");
    ASSERT_EQ(symlink("nowhere", (folder / (".file." + ProcessIdString() + ".1")).CString()), 0);
    PendingFile file(folder / "file");
    EXPECT_TRUE(file.Write("new\n"));
    EXPECT_TRUE(file.Publish());
    EXPECT_EQ(MapFileRead(folder / "file"), "new\n");
    EXPECT_EQ(MapFileRead(left), "left\n");
    EXPECT_FALSE(EntryExists(folder / "nowhere"));
}

TEST(PendingFile, FailsInAMissingDirectory) {
    const TemporaryFolder folder;
    PendingFile file(folder / "missing/file");
    EXPECT_FALSE(file.IsOpen());
    EXPECT_FALSE(file.Write("one\n"));
    EXPECT_FALSE(file.Publish());
}

TEST(PendingFile, LeavesWhatStoodThereWhenTheDiskIsFull) {
    const TemporaryFolder folder;
    folder.Write("file", "old\n");
    {
        PendingFile file(folder / "file");
        const SizeLimit limit(4096);
        EXPECT_FALSE(file.Write(SString('x', 10000)));
        EXPECT_FALSE(file.Write("y"));
        EXPECT_FALSE(file.Publish());
    }
    EXPECT_EQ(MapFileRead(folder / "file"), "old\n");
    EXPECT_EQ(ReadDir(folder / "").Count(), 1U);
}

TEST(PendingFile, FailsWhereADirectoryHasTheName) {
    const TemporaryFolder folder;
    ASSERT_TRUE(MakeDir(folder / "file", 0700));
    {
        PendingFile file(folder / "file");
        EXPECT_TRUE(file.Write("one\n"));
        EXPECT_FALSE(file.Publish());
    }
    EXPECT_TRUE(IsDirectory(folder / "file"));
    EXPECT_EQ(ReadDir(folder / "").Count(), 1U);
}

}  // namespace
