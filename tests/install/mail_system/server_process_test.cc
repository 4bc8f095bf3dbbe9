#include "install/mail_system/server_process.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "support/system/file.h"
#include "support/system/identity.h"
#include "tests/temporary_folder.h"

namespace {

/// The exit status of the server that was started last.
int WaitForServer() {
    int status = 0;
    EXPECT_GT(wait(&status), 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(StartServer, PassesItsPathOnly) {
    const TemporaryFolder folder;
    const SString program = folder.Write("server", "#!/bin/sh\necho \"$0 $#\" >${0%/*}/arguments\n", 0755);
    ASSERT_TRUE(StartServer(program));
    EXPECT_EQ(WaitForServer(), 0);
    EXPECT_EQ(MapFileRead(folder / "arguments"), program + " 0\n");
}

TEST(StartServer, ShowsAProgramThatCannotBeRunInTheStatus) {
    const TemporaryFolder folder;
    for (const SString& path : {folder / "none", folder.Write("plain", "text", 0644), folder / ""}) {
        ASSERT_TRUE(StartServer(path));
        EXPECT_EQ(WaitForServer(), 127);
    }
}

/// Lines of the started program's /proc/self/status, as selected. Not read by a shell: some clear the mask
/// that they inherit.
SStringList StatusOfServer(const SString& expression) {
    const TemporaryFolder folder;
    const SString file = folder / "status";
    EXPECT_TRUE(StartServer({"/bin/cp", "/proc/self/status", file}));
    EXPECT_EQ(WaitForServer(), 0);
    return Lines(MapFileRead(file)).Grep(expression);
}

TEST(StartServer, GivesRootsIdentityBack) {
    const AsUser owner({54321, 54322, {54322}});
    ASSERT_TRUE(owner.IsTaken());
    const SString gid(getgid());
    EXPECT_EQ(
        StatusOfServer("/^[UG]id:/"),
        (SStringList{"Uid:\t0\t0\t0\t0\n", "Gid:\t" + gid + "\t" + gid + "\t" + gid + "\t" + gid + "\n"}));
}

TEST(StartServer, StartsASession) {
    const SStringList status = StatusOfServer("s/^(Pid|NSsid):\\t//");
    ASSERT_EQ(status.Count(), 2U);
    EXPECT_EQ(status[0].Split("\\s+"), status[1].Split("\\s+"));
}

TEST(StartServer, PutsSignalsBack) {
    const auto handler_before = signal(SIGHUP, SIG_IGN);
    sigset_t blocked;
    sigset_t mask_before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    sigprocmask(SIG_BLOCK, &blocked, &mask_before);
    const SStringList status = StatusOfServer("/^Sig(Blk|Ign):/");
    sigprocmask(SIG_SETMASK, &mask_before, nullptr);
    signal(SIGHUP, handler_before);
    EXPECT_EQ(status, (SStringList{"SigBlk:\t0000000000000000\n", "SigIgn:\t0000000000000000\n"}));
}

TEST(StartServer, HandsDownOnlyTheStandardDescriptors) {
    const int stray = dup(STDERR_FILENO);  // stays open across exec
    ASSERT_GT(stray, STDERR_FILENO);
    ASSERT_TRUE(StartServer({"/bin/sh", "-c", "[ ! -e /proc/self/fd/" + SString(stray) + " ]"}));
    EXPECT_EQ(WaitForServer(), 0);
    close(stray);
}

}  // namespace
