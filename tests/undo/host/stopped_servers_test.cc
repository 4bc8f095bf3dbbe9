#include "undo/host/stopped_servers.h"

#include <gtest/gtest.h>

namespace {

const SStringList kSendmail = "sendmail: accepting";

bool IsExim(const SString& unit) {
    return unit == "exim4.service";
}

change::ProcessesSignalled Signalled(const SString& signal) {
    return {signal,
            {{4711, "exim4", 0, {"/usr/sbin/exim4", "-bd"}, "exim4.service"},
             {4712, "qpopper", 0, {"qpopper", "-s"}, "qpopper.service"},
             {4713, "sendmail", 25, {"sendmail: accepting"}, ""},
             {4714, "sendmail", 25, {"sendmail: accepting"}, ""},
             {4715, "fingerd", 0, {}, "--odd;.service"}}};
}

SStringList ByHandWith(const std::vector<Runner>& running) {
    return StoppedServersOf(Signalled("TERM"), running, IsExim).by_hand;
}

TEST(StoppedServersOf, TellsEachOnce) {
    const StoppedServers stopped = StoppedServersOf(Signalled("TERM"), {{1, "sh", 0}}, IsExim);
    EXPECT_EQ(stopped.units, SStringList("qpopper.service"));
    EXPECT_EQ(
        stopped.by_hand,
        SStringList({"sendmail is to be started again by hand; it called itself \"sendmail: accepting\"",
                     "fingerd is to be started again by hand"}));
}

TEST(StoppedServersOf, LeavesOutWhatRuns) {
    EXPECT_TRUE(ByHandWith({{5001, "fingerd", 0}, {5002, "sendmail", 25, kSendmail}}).IsEmpty());
    EXPECT_TRUE(ByHandWith({{5003, "fingerd", 0}, {5004, "sendmail", 0, kSendmail}}).IsEmpty());
}

TEST(StoppedServersOf, TellsOfAProcessThatOthersOutlived) {
    EXPECT_EQ(ByHandWith({{4715, "fingerd", 0}, {4714, "sendmail", 25, kSendmail}}).Count(), 1U);
    EXPECT_TRUE(
        ByHandWith(
            {{4715, "fingerd", 0}, {4713, "sendmail", 25, kSendmail}, {4714, "sendmail", 25, kSendmail}})
            .IsEmpty());
}

TEST(StoppedServersOf, CountsNobodyElsesProcess) {
    EXPECT_EQ(ByHandWith({{5005, "fingerd", 1001}, {5006, "sendmail", 1001, kSendmail}}).Count(), 2U);
    EXPECT_EQ(ByHandWith({{4715, "fingerd", 1001}, {4713, "sendmail", 1001}}).Count(), 2U);  // ids again
    EXPECT_EQ(ByHandWith({{5007, "fingerd", 25}, {5008, "sendmail", 25, kSendmail}}).Count(), 1U);
}

TEST(StoppedServersOf, CountsNoOtherServerOfThatName) {
    EXPECT_EQ(ByHandWith({{5005, "fingerd", 0, {"any"}}, {5006, "sendmail", 0, "sendmail: queue"}}).Count(),
              1U);
    EXPECT_TRUE(
        ByHandWith({{4715, "fingerd", 0}, {4713, "sendmail", 25, "sendmail: queue"}, {4714, "sendmail", 25}})
            .IsEmpty());
}

TEST(StoppedServersOf, KnowsThatAHangUpStopsNothing) {
    const StoppedServers stopped = StoppedServersOf(Signalled("HUP"), {}, IsExim);
    EXPECT_TRUE(stopped.units.IsEmpty());
    EXPECT_TRUE(stopped.by_hand.IsEmpty());
}

}  // namespace
