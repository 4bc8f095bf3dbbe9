#include "support/system/clock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace {

TEST(RFC822Date, HasTheStandardsForm) {
    EXPECT_TRUE(
        RFC822Date().Matches("^(Mon|Tue|Wed|Thu|Fri|Sat|Sun), \\d\\d "
                             "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) \\d{4} "
                             "\\d\\d:\\d\\d:\\d\\d [+-]\\d{4}\\z"))
        << RFC822Date();
}

TEST(TimeOfRFC822Date, TakesOnlyWhatIsWrittenHere) {
    EXPECT_EQ(TimeOfRFC822Date("Sat, 21 Nov 2026 14:05:09 +0100"), 1795266309);
    EXPECT_EQ(TimeOfRFC822Date("Sat, 21 Nov 2026 09:35:09 -0330"), 1795266309);
    const auto now = TimeOfRFC822Date(RFC822Date());
    ASSERT_TRUE(now);
    EXPECT_LE(std::abs(*now - time(nullptr)), 1);
    for (const char* date : {"", "x", "Sun, 21 Nov 2026 14:05:09 +0100", "Sat, 21 Nov 2026 14:05:09 +0100 ",
                             "Sat,  21 Nov 2026 14:05:09 +0100", "Sat, 31 Feb 2026 14:05:09 +0100",
                             "Sat, 21 November 2026 14:05:09 +0100"}) {
        EXPECT_FALSE(TimeOfRFC822Date(date)) << date;
    }
}

TEST(TimeOfUniversal, TakesOnlyWhatIsWrittenHere) {
    EXPECT_EQ(TimeOfUniversal("2026-11-21T13:05:09Z"), 1795266309);
    for (const char* time : {"", "2026-11-21T13:05:09", "2026-11-21 13:05:09Z", "2026-11-21T13:05:9Z"}) {
        EXPECT_FALSE(TimeOfUniversal(time)) << time;
    }
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
