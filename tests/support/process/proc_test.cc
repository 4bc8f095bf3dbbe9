#include "support/process/proc.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace {

TEST(CommandLines, AreThoseOfTheProcesses) {
    const std::vector<SStringList> commands = CommandLines({2147483646, getpid()});
    ASSERT_EQ(commands.size(), 2U);
    EXPECT_TRUE(commands[0].IsEmpty());
    EXPECT_TRUE(commands[1].Get(0).EndsWith("support_test"));
}

TEST(ProcText, IsEmptyForNobody) {
    EXPECT_EQ(ProcText(2147483646, "status"), "");
    EXPECT_TRUE(ProcText(getpid(), "status").StartsWith("Name:"));
}

}  // namespace
