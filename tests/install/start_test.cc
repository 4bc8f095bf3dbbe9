#include <grp.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "install/server_process.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/descriptor.h"
#include "support/file.h"
#include "support/identity.h"
#include "tests/dialogue.h"
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
    const AsUser owner(54321, 54322, {54322});
    ASSERT_TRUE(owner.IsTaken());
    const SString gid(getgid());
    EXPECT_EQ(
        StatusOfServer("/^[UG]id:/"),
        (SStringList{"Uid:\t0\t0\t0\t0\n", "Gid:\t" + gid + "\t" + gid + "\t" + gid + "\t" + gid + "\n"}));
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

TEST(StartDaemon, IsNotDoneWithShowStoppersUnlessAsked) {
    gf_ShowStoppers = 1;
    gstrl_Reminders = {"Kill program (and prevent boot startup): popd", ""};
    for (const char* answer : {"", "\n", "no\n", "quit\n", "maybe\n"}) {
        const Dialogue dialogue(answer);
        EXPECT_FALSE(StartDaemon()) << answer;
        EXPECT_EQ(dialogue.Screen(),
                  "\n"
                  "Before starting tern.harbor, you should take care of the problems that were\n"
                  "noted earlier in the installation procedure.  If you don't, the system may\n"
                  "not function properly.\n"
                  "\n"
                  "The unresolved items are:\n"
                  "\n"
                  "    Kill program (and prevent boot startup): popd\n"
                  "    \n"
                  "Do you want to try to start the system anyway? yes/no/quit [no] \n");
    }
    gf_ShowStoppers = 0;
    gstrl_Reminders.Reset();
}

TEST(StartDaemon, LeavesTheServerFourSecondsToSpeak) {
    const TemporaryFolder folder;
    gstr_ProgramDir = folder / "";
    folder.Write("tern.harbor", "#!/bin/sh\n", 0755);
    const auto begin = std::chrono::steady_clock::now();
    const Dialogue dialogue;
    EXPECT_TRUE(StartDaemon());
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
    EXPECT_EQ(WaitForServer(), 0);
    gstr_ProgramDir = "";
}

}  // namespace
