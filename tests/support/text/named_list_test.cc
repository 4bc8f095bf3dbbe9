#include "support/text/named_list.h"

#include <gtest/gtest.h>

namespace {

TEST(SNamedStringList, MakesAListWhenIndexed) {
    SNamedStringList lists;
    EXPECT_TRUE(lists["To"].IsEmpty());
    EXPECT_EQ(lists.Keys(), SStringList("To"));
    lists["To"].Push("a");
    EXPECT_EQ(lists.Get("To"), SStringList("a"));
}

TEST(SNamedStringList, MakesNoneWhenRead) {
    const SNamedStringList lists;
    EXPECT_TRUE(lists.Get("To").IsEmpty());
    EXPECT_TRUE(lists.Keys().IsEmpty());
}

TEST(SNamedStringList, KeepsTheOrderOfItsNames) {
    SNamedStringList lists;
    for (const char* name : {"To", "From", "Date", "From", "to"}) lists[name].Push("x");
    EXPECT_EQ(lists.Keys(), SStringList({"To", "From", "Date", "to"}));
    EXPECT_EQ(lists.Get("From").Count(), 2U);
}

TEST(SNamedStringList, DeletesOneOrAll) {
    SNamedStringList lists;
    lists["a"] = "1";
    lists["b"] = "2";
    lists.Delete("none");
    lists.Delete(lists.Keys()[0]);
    EXPECT_EQ(lists.Keys(), SStringList("b"));
    EXPECT_TRUE(lists.Get("a").IsEmpty());
    EXPECT_TRUE(lists["a"].IsEmpty());
    lists["a"] = "3";
    EXPECT_EQ(lists.Keys(), SStringList({"b", "a"}));
    lists.Reset();
    EXPECT_TRUE(lists.Keys().IsEmpty());
    EXPECT_TRUE(lists.Get("b").IsEmpty());
}

}  // namespace
