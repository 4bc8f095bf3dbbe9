#include "install/visits/maildrop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <string>

#include "support/system/file.h"
#include "support/system/regular_file.h"
#include "tests/install/record/recording.h"
#include "tests/temporary_folder.h"

namespace {

const Identity kUser = {2001, 2001, {2001}};
constexpr gid_t kMail = 2008;

struct stat StatusOf(const SString& path) {
    struct stat status = {};
    EXPECT_EQ(lstat(path.CString(), &status), 0) << path;
    return status;
}

TEST(RepairMaildrop, GivesAPlainFileToTheUserAndTheMailGroup) {
    const struct {
        const char* what;
        uid_t uid;
        gid_t gid;
        mode_t mode;
    } cases[] = {
        {"right already", 2001, 2008, 0660},
        {"mode too open", 2001, 2008, 0666},
        {"mode too closed", 2001, 2008, 0600},
        {"no rights at all", 2001, 2008, 0},
        {"other owner", 0, 2008, 0660},
        {"other group", 2001, 2001, 0660},
        {"all other", 33, 33, 0644},
        {"set-user-id", 2001, 2008, 04660},
        {"set-user-id, other owner", 0, 0, 06777},
    };
    for (const auto& c : cases) {
        const TemporaryFolder folder;
        const SString path = folder.Write("anna", "From x\n");
        ASSERT_EQ(chown(path.CString(), c.uid, c.gid), 0);
        ASSERT_EQ(chmod(path.CString(), c.mode), 0);
        EXPECT_EQ(RepairMaildrop(path, kUser, kMail), Maildrop::Fine) << c.what;
        const struct stat status = StatusOf(path);
        EXPECT_EQ(status.st_uid, 2001U) << c.what;
        EXPECT_EQ(status.st_gid, 2008U) << c.what;
        EXPECT_EQ(status.st_mode & 07777, 0660U) << c.what;
        EXPECT_EQ(MapFileRead(path), "From x\n") << c.what;
    }
}

/// What somebody who opened the file before the repair can still do to what has its name now.
TEST(RepairMaildrop, ReplacesAnEmptyFileOfAThirdLogin) {
    const TemporaryFolder folder;
    chmod((folder / "").CString(), 01777);
    const SString path = folder.Write("anna", "", 0660);
    ASSERT_EQ(chown(path.CString(), 33, 2008), 0);
    const Descriptor makers = Descriptor::Open(path, O_RDWR);
    EXPECT_EQ(RepairMaildrop(path, kUser, kMail), Maildrop::Fine);
    EXPECT_TRUE(makers.WriteAll("spoofed\n"));
    EXPECT_EQ(MapFileRead(path), "");
    const struct stat status = StatusOf(path);
    EXPECT_EQ(status.st_uid, 2001U);
    EXPECT_EQ(status.st_gid, 2008U);
    EXPECT_EQ(status.st_mode & 07777, 0660U);
    EXPECT_EQ(ReadDir(folder / "").Count(), 1U);
}

TEST(RepairMaildrop, KeepsTheFileOfAThirdLoginThatHasMail) {
    for (const uid_t owner : {uid_t{0}, uid_t{33}}) {
        const TemporaryFolder folder;
        const SString path = folder.Write("anna", owner == 0 ? "" : "From x\n", 0600);
        ASSERT_EQ(chown(path.CString(), owner, 33), 0);
        const ino_t before = StatusOf(path).st_ino;
        EXPECT_EQ(RepairMaildrop(path, kUser, kMail), Maildrop::Fine);
        EXPECT_EQ(StatusOf(path).st_ino, before);
        EXPECT_EQ(StatusOf(path).st_uid, 2001U);
    }
}

/// The lock of whoever made it does not keep the file his.
TEST(RepairMaildrop, ReplacesAFileThatItsMakerLocks) {
    const TemporaryFolder folder;
    const SString path = folder.Write("anna", "", 0660);
    ASSERT_EQ(chown(path.CString(), 33, 2008), 0);
    const Descriptor makers = Descriptor::Open(path, O_RDWR);
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    ASSERT_EQ(fcntl(makers.Get(), F_OFD_SETLK, &lock), 0);
    RepairMaildrop(path, kUser, kMail);
    EXPECT_EQ(StatusOf(path).st_uid, 2001U);
    EXPECT_FALSE(IsSameFile(StatusOf(path), *makers.Stat()));
}

/// Nor does a lease, which makes every attempt to open the file fail.
TEST(RepairMaildrop, ReplacesAFileThatItsMakerLetsNobodyOpen) {
    const TemporaryFolder folder;
    const SString path = folder.Write("anna", "", 0660);
    ASSERT_EQ(chown(path.CString(), 33, 2008), 0);
    const auto before = std::signal(SIGIO, SIG_IGN);  // asks for the lease back
    {
        const Descriptor makers = Descriptor::Open(path, O_RDWR);
        ASSERT_EQ(fcntl(makers.Get(), F_SETLEASE, F_WRLCK), 0);
        RepairMaildrop(path, kUser, kMail);
        EXPECT_EQ(StatusOf(path).st_uid, 2001U);
        EXPECT_FALSE(IsSameFile(StatusOf(path), *makers.Stat()));
    }
    std::signal(SIGIO, before);
}

/// "version 2, then tag, rights and id of each entry" (linux/posix_acl_xattr.h): the login 33 may read and
/// write.
const std::string kListWithAnother(
    "\x02\x00\x00\x00"
    "\x01\x00\x06\x00\xff\xff\xff\xff"
    "\x02\x00\x06\x00\x21\x00\x00\x00"
    "\x04\x00\x06\x00\xff\xff\xff\xff"
    "\x10\x00\x06\x00\xff\xff\xff\xff"
    "\x20\x00\x00\x00\xff\xff\xff\xff",
    44);

TEST(RepairMaildrop, TakesTheAccessListOffWhatItRepairs) {
    constexpr const char* kList = "system.posix_acl_access";
    const struct {
        uid_t owner;
        bool is_repaired;
    } cases[] = {{33, true}, {0, true}, {2001, false}};
    for (const auto& c : cases) {
        const TemporaryFolder folder;
        const SString path = folder.Write("anna", "From x\n", 0660);
        ASSERT_EQ(chown(path.CString(), c.owner, 2008), 0);
        ASSERT_EQ(setxattr(path.CString(), kList, kListWithAnother.data(), kListWithAnother.size(), 0), 0);
        RepairMaildrop(path, kUser, kMail);
        EXPECT_EQ(getxattr(path.CString(), kList, nullptr, 0) < 0, c.is_repaired) << c.owner;
        EXPECT_EQ(StatusOf(path).st_mode & 07777, 0660U);
    }
}

TEST(RepairMaildrop, LeavesWhatIsRightUntouched) {
    const TemporaryFolder folder;
    const SString path = folder.Write("anna", "", 0660);
    ASSERT_EQ(chown(path.CString(), 2001, 2008), 0);
    const struct stat before = StatusOf(path);
    EXPECT_EQ(RepairMaildrop(path, kUser, kMail), Maildrop::Fine);
    EXPECT_EQ(StatusOf(path).st_ctim.tv_nsec, before.st_ctim.tv_nsec);
    EXPECT_EQ(StatusOf(path).st_ctim.tv_sec, before.st_ctim.tv_sec);
}

TEST(RepairMaildrop, GivesNothingToAnIdThatIsNone) {
    const TemporaryFolder folder;
    const SString path = folder.Write("anna", "", 0600);
    ASSERT_EQ(chown(path.CString(), 33, 33), 0);
    for (const Identity& user : {Identity{UINT32_MAX, 2001, {}}, Identity{2001, UINT32_MAX, {}}}) {
        EXPECT_EQ(RepairMaildrop(path, user, kMail), Maildrop::Fine);
        EXPECT_EQ(StatusOf(path).st_uid, 33U);
        EXPECT_EQ(StatusOf(path).st_gid, 33U);
        EXPECT_EQ(StatusOf(path).st_mode & 07777, 0600U);
    }
}

TEST(RepairMaildrop, MakesNoFile) {
    const TemporaryFolder folder;
    EXPECT_EQ(RepairMaildrop(folder / "anna", kUser, kMail), Maildrop::Fine);
    EXPECT_FALSE(EntryExists(folder / "anna"));
}

TEST(RepairMaildrop, TouchesNothingButAPlainFile) {
    const TemporaryFolder folder;
    const SString target = folder.Write("target", "secret\n", 0600);
    const SString hard = folder.Write("hard", "secret\n", 0600);
    const SString path = folder / "anna";
    const struct {
        const char* what;
        int (*make)(const char* target, const char* path);
        SString target;
    } cases[] = {
        {"a link", symlink, target},
        {"a dangling link", symlink, "nowhere"},
        {"a hard link", link, hard},
        {"a FIFO", [](const char*, const char* p) { return mkfifo(p, 0666); }, ""},
        {"a directory", [](const char*, const char* p) { return mkdir(p, 0777); }, ""},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(c.make(c.target.CString(), path.CString()), 0) << c.what;
        const struct stat before = StatusOf(path);
        EXPECT_EQ(RepairMaildrop(path, kUser, kMail), Maildrop::Suspicious) << c.what;
        EXPECT_EQ(StatusOf(path).st_uid, before.st_uid) << c.what;
        EXPECT_EQ(StatusOf(path).st_mode, before.st_mode) << c.what;
        ASSERT_EQ(remove(path.CString()), 0);
    }
    EXPECT_EQ(StatusOf(target).st_uid, 0U);
    EXPECT_EQ(StatusOf(target).st_mode & 07777, 0600U);
    EXPECT_EQ(StatusOf(hard).st_uid, 0U);
}

TEST(RepairMaildrop, IsRecordedWithWhatItHadBefore) {
    const TemporaryFolder folder;
    const SString path = folder.Write("anna", "From x\n", 0640);
    ASSERT_EQ(chown(path.CString(), 33, 34), 0);
    const Recording recording;
    EXPECT_EQ(RepairMaildrop(path, kUser, kMail), Maildrop::Fine);
    const auto given = recording.Only<change::MaildropGiven>();
    EXPECT_EQ(given.path, path);
    EXPECT_EQ(given.before, (change::Access{33, 34, {0640}, ""}));
    EXPECT_EQ(given.user, kUser.uid);
    EXPECT_EQ(given.mail_group, kMail);
    EXPECT_FALSE(given.is_replaced);
}

TEST(RepairMaildrop, IsRecordedWithTheProcessThatReplacesAFile) {
    const TemporaryFolder folder;
    const SString path = folder.Write("anna", "", 0640);
    ASSERT_EQ(chown(path.CString(), 33, 34), 0);
    const Recording recording;
    EXPECT_EQ(RepairMaildrop(path, kUser, kMail), Maildrop::Fine);
    const auto given = recording.Only<change::MaildropGiven>();
    EXPECT_TRUE(given.is_replaced);
    EXPECT_EQ(given.process, getpid());
}

TEST(RepairMaildrop, IsNotRecordedWhereNothingChanges) {
    const TemporaryFolder folder;
    const SString path = folder.Write("anna", "", 0660);
    ASSERT_EQ(chown(path.CString(), kUser.uid, kMail), 0);
    const Recording recording;
    EXPECT_EQ(RepairMaildrop(path, kUser, kMail), Maildrop::Fine);
    EXPECT_EQ(RepairMaildrop(folder / "missing", kUser, kMail), Maildrop::Fine);
    EXPECT_TRUE(recording.Changes().empty());
}

}  // namespace
