#include "support/system/run_lock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

/// What a look in another process gives.
template <typename Look>
pid_t SeenByAnother(const Look& look) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) return -2;
    const pid_t child = fork();
    if (child == 0) {
        const pid_t seen = look();
        _exit(write(ends[1], &seen, sizeof seen) == sizeof seen ? 0 : 1);
    }
    pid_t seen = -2;
    waitpid(child, nullptr, 0);
    EXPECT_EQ(read(ends[0], &seen, sizeof seen), static_cast<ssize_t>(sizeof seen));
    close(ends[0]);
    close(ends[1]);
    return seen;
}

/// Whom another process takes for the holder; -1 where it gets the lock itself.
pid_t HolderSeenByAnother(const SString& path) {
    return SeenByAnother([&] { return RunLock(path).Other().value_or(-1); });
}

TEST(RunLock, IsHeldByOneProcessAndNamesIt) {
    const TemporaryFolder folder;
    {
        const RunLock lock(folder / "lock");
        EXPECT_FALSE(lock.Other());
        EXPECT_EQ(HolderSeenByAnother(folder / "lock"), getpid());
        EXPECT_EQ(HolderSeenByAnother(folder / "lock"), getpid());
    }
    EXPECT_EQ(HolderSeenByAnother(folder / "lock"), -1);
}

TEST(RunLock, TellsItsHolderToWhoeverOnlyLooks) {
    const TemporaryFolder folder;
    EXPECT_FALSE(RunLock::Holder(folder / "lock"));
    EXPECT_FALSE(EntryExists(folder / "lock"));
    const RunLock lock(folder / "lock");
    EXPECT_EQ(SeenByAnother([&] { return RunLock::Holder(folder / "lock").value_or(-1); }), getpid());
    EXPECT_EQ(HolderSeenByAnother(folder / "lock"), getpid());
}

TEST(RunLock, IsOnAFileThatNobodyElseCanOpen) {
    const TemporaryFolder folder;
    folder.Write("old", "", 0666);
    const mode_t before = umask(0);
    for (const char* name : {"new", "old"}) {
        const RunLock lock(folder / name);
        struct stat status {};
        ASSERT_EQ(stat((folder / name).CString(), &status), 0);
        EXPECT_EQ(status.st_mode, S_IFREG | 0600U) << name;
    }
    umask(before);
}

TEST(RunLock, IsNotKeptByAChildThatHangs) {
    const TemporaryFolder folder;
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        const RunLock lock(folder / "lock");
        const pid_t hanging = fork();
        if (hanging == 0) {
            while (true) pause();
        }
        const bool is_told = write(ends[1], &hanging, sizeof hanging) == sizeof hanging;
        _exit(is_told && HolderSeenByAnother(folder / "lock") == getpid() ? 0 : 1);
    }
    int status = 1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    pid_t hanging = 0;
    ASSERT_EQ(read(ends[0], &hanging, sizeof hanging), static_cast<ssize_t>(sizeof hanging));
    EXPECT_EQ(kill(hanging, 0), 0);
    EXPECT_EQ(HolderSeenByAnother(folder / "lock"), -1);
    kill(hanging, SIGKILL);
    close(ends[0]);
    close(ends[1]);
}

TEST(RunLock, IsNotTakenWhereNoneCanBe) {
    const TemporaryFolder folder;
    const SString file = folder.Write("file", "");
    const SString other = folder.Write("another's", "");
    ASSERT_EQ(symlink(file.CString(), (folder / "link").CString()), 0);
    ASSERT_EQ(mkfifo((folder / "fifo").CString(), 0600), 0);
    ASSERT_EQ(chown(other.CString(), 54321, 54321), 0);
    for (const char* name : {"missing/lock", "link", "fifo", "another's", "."}) {
        const RunLock lock(folder / name);
        EXPECT_FALSE(lock.Other()) << name;
        EXPECT_EQ(HolderSeenByAnother(folder / name), -1) << name;
    }
    EXPECT_FALSE(EntryExists(folder / "missing"));
}

}  // namespace
