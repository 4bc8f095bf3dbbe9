#include "install/start_up.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/dialogue.h"

namespace {

constexpr int kAsExpected = 42;

TEST(Main, IsForRootOnly) {
    const pid_t child = fork();
    if (child == 0) {
        const Dialogue dialogue;
        const bool is_user = setresuid(54321, 54321, 54321) == 0;
        const bool is_refused = Main() == 2;
        const bool is_told = dialogue.Screen() == "You must be root to run the installation program.\n";
        _exit(is_user && is_refused && is_told ? kAsExpected : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), kAsExpected);
}

}  // namespace
