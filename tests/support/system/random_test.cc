#include "support/system/random.h"

#include <gtest/gtest.h>

#include <set>

namespace {

TEST(RandomInt, DrawsEveryValueOfItsRange) {
    std::set<int> drawn;
    for (int i = 0; i < 10'000; ++i) drawn.insert(RandomInt(9));
    EXPECT_EQ(drawn, (std::set<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(RandomInt(1), 0);
}

TEST(RandomBytes, AreAsManyAsWanted) {
    EXPECT_EQ(RandomBytes(32).Length(), 32U);
    EXPECT_NE(RandomBytes(32), RandomBytes(32));
}

}  // namespace
