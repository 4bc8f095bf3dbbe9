#include "support/text/counted.h"

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

TEST(Counted, KnowsOne) {
    EXPECT_EQ(Counted(0, "login"), "0 logins");
    EXPECT_EQ(Counted(1, "login"), "1 login");
}

}  // namespace
