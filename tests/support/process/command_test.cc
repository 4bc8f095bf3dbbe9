#include "support/process/command.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>

namespace {

TEST(ReadCommand, GivesLinesWithTheirEnds) {
    EXPECT_EQ(ReadCommand("printf 'a\\n\\n b \\nlast'"), (SStringList{"a\n", "\n", " b \n", "last"}));
    EXPECT_TRUE(ReadCommand("true").IsEmpty());
    EXPECT_EQ(ReadCommand("echo x; exit 3"), SStringList("x\n"));
}

TEST(ReadCommand, CutsLongLines) {
    const SStringList pieces = ReadCommand("printf '%01200d\\n%0510d\\n%0511d\\n' 0 0 0");
    ASSERT_EQ(pieces.Count(), 6U);
    const size_t lengths[] = {511, 511, 179, 511, 511, 1};
    for (size_t i = 0; i < pieces.Count(); ++i) EXPECT_EQ(pieces[i].Length(), lengths[i]) << i;
}

TEST(ReadCommand, KeepsNulBytes) {
    EXPECT_EQ(ReadCommand("printf 'a\\000b\\n\\000'"),
              (SStringList{SString(std::string("a\0b\n", 4)), SString(std::string("\0", 1))}));
}

TEST(ReadCommand, OfAMissingProgramIsEmptyAndSilent) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(ReadCommand("/no/such/program -x").IsEmpty());
    EXPECT_TRUE(ReadCommand("syntax error (").IsEmpty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ReadCommand, IsNotCutShortByTheTerminal) {
    for (const char* signal : {"HUP", "INT", "QUIT", "TERM"}) {
        EXPECT_EQ(ReadCommand(SString("sh -c 'kill -") + signal + " $$; echo alive'"),
                  SStringList("alive\n"));
    }
}

TEST(ReadCommand, LosesNoSignalThatComesMeanwhile) {
    const auto run = [] {
        std::signal(SIGTERM, [](int) { _exit(77); });
        sigset_t terminal;
        sigemptyset(&terminal);
        sigaddset(&terminal, SIGTERM);
        sigprocmask(SIG_BLOCK, &terminal, nullptr);
        raise(SIGTERM);
        ReadCommand("true");
        sigprocmask(SIG_UNBLOCK, &terminal, nullptr);
        _exit(1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(77), "");
}

TEST(ReadCommand, LeavesThisProcessesSignalsAsTheyWere) {
    struct sigaction before {};
    sigaction(SIGINT, nullptr, &before);
    sigset_t mask_before;
    sigprocmask(SIG_SETMASK, nullptr, &mask_before);
    ReadCommand("true");
    struct sigaction after {};
    sigaction(SIGINT, nullptr, &after);
    sigset_t mask_after;
    sigprocmask(SIG_SETMASK, nullptr, &mask_after);
    EXPECT_EQ(after.sa_handler, before.sa_handler);
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        EXPECT_EQ(sigismember(&mask_after, number), sigismember(&mask_before, number));
    }
}

TEST(ReadCommand, LeavesTheAnswersAlone) {
    EXPECT_TRUE(ReadCommand("cat").IsEmpty());
}

TEST(ReadCommand, PassesNothingOfTheEnvironmentOn) {
    const char* const names[] = {"COLUMNS", "PS_FORMAT", "TCPDIAG_FILE", "ENV", "IFS", "TERN_STRAY"};
    for (const char* name : names) setenv(name, "7", 1);
    // What the shell sets for itself is not inherited.
    EXPECT_EQ(ReadCommand("tr '\\0' '\\n' </proc/$$/environ"),
              (SStringList{"PATH=/usr/sbin:/usr/bin:/sbin:/bin\n", "LC_ALL=C.UTF-8\n"}));
    EXPECT_STREQ(getenv("TERN_STRAY"), "7");
    for (const char* name : names) unsetenv(name);
}

TEST(ReadCommand, HandsDownOnlyTheStandardDescriptors) {
    const int stray = fcntl(STDERR_FILENO, F_DUPFD, 77);  // stays open across exec
    ASSERT_GE(stray, 77);
    const SString path = "/proc/self/fd/" + SString(stray);
    EXPECT_TRUE(ReadCommand("[ -e " + path + " ] && echo inherited").IsEmpty());
    close(stray);
}

TEST(ReadCommand, LeavesNoChildBehind) {
    const auto run = [] {
        ReadCommand("true");
        const bool is_childless = waitpid(-1, nullptr, WNOHANG) < 0 && errno == ECHILD;
        _exit(is_childless ? 77 : 1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(77), "");
}

}  // namespace
