#include "install/host/await.h"

#include <gtest/gtest.h>

namespace {

TEST(Await, LooksAgainUntilItIsSo) {
    int looks = 0;
    Await([&] { return ++looks == 3; });
    EXPECT_EQ(looks, 3);
}

TEST(Await, GivesUpAfterFiftyLooks) {
    int looks = 0;
    Await([&] { return ++looks == 0; });
    EXPECT_EQ(looks, 50);
}

}  // namespace
