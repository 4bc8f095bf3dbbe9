#include "undo/options.h"

#include <gtest/gtest.h>

namespace {

TEST(OptionsFrom, TakesSwitchesAndOneRun) {
    const auto options = OptionsFrom({"--yes", "20261122T170405Z-4711", "--accounts"});
    ASSERT_TRUE(options);
    EXPECT_TRUE(options->yes);
    EXPECT_TRUE(options->undo.accounts);
    EXPECT_FALSE(options->undo.units);
    EXPECT_FALSE(options->list);
    EXPECT_EQ(options->run, "20261122T170405Z-4711");
    EXPECT_TRUE(OptionsFrom({})->run.IsEmpty());
    EXPECT_TRUE(OptionsFrom("--start-units")->undo.units);
}

TEST(OptionsFrom, RefusesWhatItDoesNotKnow) {
    EXPECT_FALSE(OptionsFrom("--account"));
    EXPECT_FALSE(OptionsFrom("-y"));
    EXPECT_FALSE(OptionsFrom(""));
    EXPECT_FALSE(OptionsFrom({"one", "two"}));
    EXPECT_FALSE(OptionsFrom({"--list", "--yes"}));
}

}  // namespace
