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

TEST(ReadCommandLines, GivesEachProcessItsOwn) {
    struct Process {
        int64_t id = 0;
        SStringList command;
    };
    std::vector<Process> processes = {{getpid(), {}}, {2147483646, "stale"}, {getppid(), {}}};
    ReadCommandLines(&processes);
    EXPECT_TRUE(processes[0].command.Get(0).EndsWith("support_test"));
    EXPECT_TRUE(processes[1].command.IsEmpty());
    EXPECT_EQ(processes[2].command, CommandLines({getppid()})[0]);
    std::vector<Process> none;
    ReadCommandLines(&none);
    EXPECT_TRUE(none.empty());
}

TEST(ProcText, IsEmptyForNobody) {
    EXPECT_EQ(ProcText(2147483646, "status"), "");
    EXPECT_TRUE(ProcText(getpid(), "status").StartsWith("Name:"));
}

}  // namespace
