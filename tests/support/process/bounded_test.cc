#include "support/process/bounded.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;

TEST(ResultWithin, GivesWhatTheWorkReturns) {
    EXPECT_EQ(ResultWithin(minutes(1),
                           [] {
                               return SStringList({"a", "", SString(std::string("b\0c", 3))});
                           }),
              SStringList({"a", "", SString(std::string("b\0c", 3))}));
    EXPECT_EQ(ResultWithin(minutes(1), [] { return SStringList(); }), SStringList());
}

TEST(ResultWithin, GivesMoreThanASocketHolds) {
    const SString large('x', 10'000'000);
    EXPECT_EQ(ResultWithin(minutes(1), [&] { return SStringList(large); }), SStringList(large));
}

TEST(ResultWithin, GivesUpWorkThatHangs) {
    EXPECT_EQ(ResultWithin(milliseconds(50),
                           []() -> SStringList {
                               while (true) pause();
                           }),
              std::nullopt);
}

TEST(ResultWithin, GivesNothingOfWorkThatEnds) {
    EXPECT_EQ(ResultWithin(minutes(1), []() -> SStringList { _exit(1); }), std::nullopt);
}

TEST(ResultWithin, IsGivenUpAtASignal) {
    const auto before = std::signal(SIGTERM, [](int) {});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(ResultWithin(minutes(10),
                           []() -> SStringList {
                               kill(getppid(), SIGTERM);
                               while (true) pause();
                           }),
              std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - start, minutes(5));
    std::signal(SIGTERM, before);
}

TEST(ResultWithin, ChangesNothingHere) {
    int here = 0;
    ResultWithin(minutes(1), [&] { return SStringList(++here); });
    EXPECT_EQ(here, 0);
}

}  // namespace
