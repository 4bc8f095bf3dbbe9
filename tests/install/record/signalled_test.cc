#include "install/record/signalled.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

#include "tests/install/record/recording.h"

namespace {

TEST(RecordSignal, HasEachProcessThatIsSignalled) {
    const Recording recording;
    RecordSignal({"1 init", SString(getpid()) + " some name", "2147483646 gone"}, SIGTERM);
    const auto signalled = recording.Only<change::ProcessesSignalled>();
    EXPECT_EQ(signalled.signal, "TERM");
    ASSERT_EQ(signalled.processes.size(), 2U);
    EXPECT_EQ(signalled.processes[0].id, getpid());
    EXPECT_EQ(signalled.processes[0].name, "name");
    EXPECT_TRUE(signalled.processes[0].command.Get(0).EndsWith("install_test"));
    EXPECT_TRUE(signalled.processes[1].command.IsEmpty());
}

TEST(RecordSignal, IsNoLineForNobody) {
    const Recording recording;
    RecordSignal({"1 init"}, SIGHUP);
    EXPECT_FALSE(KillRecorded("no-such-process", SIGHUP));
    EXPECT_TRUE(recording.Changes().empty());
}

}  // namespace
