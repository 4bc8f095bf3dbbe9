#include "support/database/empty_database.h"

#include <gtest/gtest.h>

#include "support/database/account.h"
#include "support/database/sqlite.h"
#include "tests/data_directory.h"

namespace {

void Put(const SString& table, const SStringList& values) {
    Sdbfile file("Web", 0);
    ASSERT_TRUE(file.Open(table, 1) && file.Set("Socket", values));
}

TEST(RemoveEmptyTable, RemovesOneWithoutSettings) {
    const DataDirectory data;
    Put("/Config", {});
    Put("/Config/Deep", "80");
    EXPECT_EQ(RemoveEmptyTable("Web", "Config//"), Removal::Removed);
    EXPECT_EQ(RemoveEmptyTable("Web", "/Config"), Removal::Removed);
    EXPECT_EQ(RemoveEmptyTable("Web", "/Config/Deep"), Removal::NotEmpty);
    Sdbfile file("Web", 0);
    EXPECT_FALSE(file.Open("/Config", 0));
    EXPECT_TRUE(file.Open("/Config/Deep", 0));
}

TEST(RemoveEmptyTable, MakesNothing) {
    const DataDirectory data;
    EXPECT_EQ(RemoveEmptyTable("Web", "/Config"), Removal::Removed);
    EXPECT_EQ(RemoveEmptyTable("../Web", "/Config"), Removal::Failed);
    data.WriteConfig("Web", "no database, but a text that somebody has put there");
    EXPECT_EQ(RemoveEmptyTable("Web", "/Config"), Removal::NotEmpty);
    EXPECT_EQ(data.Listing(), "Web");
}

TEST(RemoveEmptyDatabase, RemovesAModulesWithoutSettings) {
    const DataDirectory data;
    Put("/Config", "80");
    EXPECT_FALSE(IsEmptyDatabase("Web"));
    EXPECT_EQ(RemoveEmptyDatabase("Web"), Removal::NotEmpty);
    Put("/Config", {});
    EXPECT_TRUE(IsEmptyDatabase("Web"));
    EXPECT_EQ(RemoveEmptyDatabase("Web"), Removal::Removed);
    EXPECT_EQ(data.Listing(), "");
    EXPECT_EQ(RemoveEmptyDatabase("Web"), Removal::Removed);
}

TEST(RemoveEmptyDatabase, RemovesTheAccountsWithTheirLog) {
    const DataDirectory data;
    SAccountMod account;
    ASSERT_TRUE(SAccountDBMod().ModifyAccount("Anna", &account));
    EXPECT_EQ(RemoveEmptyDatabase("MTA-Accounts"), Removal::NotEmpty);
    {
        // A killed process leaves a log.
        const auto other = sqlite::Connection::Open(data.Config("MTA-Accounts"), sqlite::Mode::Shared);
        ASSERT_TRUE(other->Execute("DELETE FROM accounts"));
        EXPECT_EQ(RemoveEmptyDatabase("MTA-Accounts"), Removal::Failed);  // in use
    }
    EXPECT_EQ(RemoveEmptyDatabase("MTA-Accounts"), Removal::Removed);
    EXPECT_EQ(data.Listing(), "");
}

TEST(RemoveEmptyDatabase, RemovesWhatWasNotMadeToTheEnd) {
    const DataDirectory data;
    data.WriteConfig("Web", "");
    EXPECT_EQ(RemoveEmptyDatabase("Web"), Removal::Removed);
    EXPECT_EQ(data.Listing(), "");
}

TEST(RemoveEmptyDatabase, LeavesWhatIsNoDatabaseOfOurs) {
    const DataDirectory data;
    data.WriteConfig("Text", "no database, but a text that somebody has put there");
    EXPECT_NE(RemoveEmptyDatabase("Text"), Removal::Removed);
    data.WriteConfig("Other", "");
    {
        const auto other = sqlite::Connection::Open(data.Config("Other"), sqlite::Mode::Shared);
        ASSERT_TRUE(other->Execute("CREATE TABLE theirs (x)"));
    }
    EXPECT_EQ(RemoveEmptyDatabase("Other"), Removal::NotEmpty);
    MakeDir(data.Config("Folder"), 0700);
    EXPECT_EQ(RemoveEmptyDatabase("Folder"), Removal::Failed);
    EXPECT_EQ(data.Listing(), "Folder Other Text");
}

}  // namespace
