#include "check/numerous.h"

#include <gtest/gtest.h>

namespace {

TEST(Numerous, NamesTwentyProblems) {
    Findings findings;
    Numerous many("port", &findings);
    for (int i = 0; i < 22; ++i) many.Problem("held", "stop it");
    many.End("free");
    ASSERT_EQ(findings.Count(Grade::Problem), 21U);
    EXPECT_EQ(findings.All().back().text, "2 more of them");
}

TEST(Numerous, SaysThatThereIsNone) {
    Findings findings;
    Numerous("port", &findings).End("free");
    ASSERT_EQ(findings.Count(Grade::Ok), 1U);
    EXPECT_EQ(findings.All()[0].text, "free");
}

}  // namespace
