#include "check/numerous.h"

#include <gtest/gtest.h>

namespace {

TEST(FirstOf, CountsWhatItDoesNotName) {
    SStringList names;
    EXPECT_EQ(FirstOf(names), "");
    for (int i = 1; i <= 20; ++i) names.Push(SString(i));
    EXPECT_EQ(FirstOf(names), names.Join(", "));
    const SString all = names.Join(", ");
    names.Push({"21", "22"});
    EXPECT_EQ(FirstOf(names), all + ", and 2 more");
}

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
