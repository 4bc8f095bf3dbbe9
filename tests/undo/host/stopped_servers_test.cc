#include "undo/host/stopped_servers.h"

#include <gtest/gtest.h>

namespace {

bool IsExim(const SString& unit) {
    return unit == "exim4.service";
}

change::ProcessesSignalled Signalled(const SString& signal) {
    return {signal,
            {{4711, "exim4", {"/usr/sbin/exim4", "-bd"}, "exim4.service"},
             {4712, "qpopper", {"qpopper", "-s"}, "qpopper.service"},
             {4713, "sendmail", {"sendmail: accepting"}, ""},
             {4714, "sendmail", {"sendmail: accepting"}, ""},
             {4715, "fingerd", {}, "--odd;.service"}}};
}

TEST(StoppedServersOf, TellsEachOnce) {
    const StoppedServers stopped = StoppedServersOf(Signalled("TERM"), {"sh"}, IsExim);
    EXPECT_EQ(stopped.units, SStringList("qpopper.service"));
    EXPECT_EQ(stopped.by_hand,
              SStringList({"sendmail is to be started again by hand; it called itself: sendmail: accepting",
                           "fingerd is to be started again by hand"}));
}

TEST(StoppedServersOf, LeavesOutWhatRuns) {
    EXPECT_EQ(StoppedServersOf(Signalled("TERM"), {"fingerd", "sendmail"}, IsExim).by_hand, SStringList());
}

TEST(StoppedServersOf, KnowsThatAHangUpStopsNothing) {
    const StoppedServers stopped = StoppedServersOf(Signalled("HUP"), {}, IsExim);
    EXPECT_TRUE(stopped.units.IsEmpty());
    EXPECT_TRUE(stopped.by_hand.IsEmpty());
}

}  // namespace
