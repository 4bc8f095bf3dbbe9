#include "support/system/clock.h"

#include <gtest/gtest.h>

namespace {

TEST(RFC822Date, HasTheStandardsForm) {
    EXPECT_TRUE(
        RFC822Date().Matches("^(Mon|Tue|Wed|Thu|Fri|Sat|Sun), \\d\\d "
                             "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) \\d{4} "
                             "\\d\\d:\\d\\d:\\d\\d [+-]\\d{4}\\z"))
        << RFC822Date();
}

TEST(UniversalTime, HasTheStandardsForm) {
    EXPECT_TRUE(UniversalTime().Matches("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ\\z")) << UniversalTime();
}

TEST(MessageIdDate, IsNeverTheSameTwice) {
    SString before;
    for (int i = 0; i < 1000; ++i) {
        const SString now = MessageIdDate();
        EXPECT_TRUE(now.Matches("^\\d{20}\\z")) << now;
        EXPECT_LT(before, now);
        before = now;
    }
}

}  // namespace
