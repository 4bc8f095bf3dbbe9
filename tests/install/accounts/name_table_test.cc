#include "install/accounts/name_table.h"

#include <gtest/gtest.h>

namespace {

TEST(NameTable, FindsAllValuesOfANameInTheirOrder) {
    NameTable<int> table;
    table.Sort();
    EXPECT_TRUE(table.Find("a").empty());
    table.Add("b", 1);
    table.Add("a", 2);
    table.Add("b", 3);
    table.Add("", 4);
    table.Add("ba", 5);
    table.Add("b", 0);
    table.Sort();
    const auto rows = table.Find("b");
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0].value, 1);
    EXPECT_EQ(rows[1].value, 3);
    EXPECT_EQ(rows[2].value, 0);
    EXPECT_EQ(table.Find("").front().value, 4);
    EXPECT_EQ(table.Find("ba").front().value, 5);
    EXPECT_TRUE(table.Find("bab").empty());
    EXPECT_TRUE(table.Find("c").empty());
}

}  // namespace
