#include "install/critical_section.h"

#include <gtest/gtest.h>

namespace {

TEST(CriticalSection, EndsWithTheOutermost) {
    {
        const CriticalSection outer;
        { const CriticalSection inner; }
        EXPECT_EQ(gf_OkToBeKilled, 0);
    }
    EXPECT_EQ(gf_OkToBeKilled, 1);
}

TEST(Uninterrupted, GivesWhatTheWorkGives) {
    EXPECT_EQ(Uninterrupted([] { return gf_OkToBeKilled == 0 ? 42 : 0; }), 42);
    EXPECT_EQ(gf_OkToBeKilled, 1);
}

}  // namespace
