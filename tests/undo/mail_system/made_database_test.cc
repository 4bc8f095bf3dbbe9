#include <gtest/gtest.h>

#include "support/database/sdbfile.h"
#include "tests/install/account_database.h"
#include "undo/ways.h"

namespace {

class MadeDatabase : public testing::Test {
  protected:
    void Put(const SString& key, const SStringList& values) const {
        Sdbfile file("Web", 0);
        ASSERT_TRUE(file.Open("/Config", 1) && file.Set(key, values));
    }
    SString Path(const SString& name) const { return site_.Folder() / ("config/" + name); }

    AccountDatabase site_;
    UndoneRun run_;
};

TEST_F(MadeDatabase, GoesWithItsTable) {
    Put("Socket", "80");
    const change::DatabaseMade file = {Path("Web"), ""};
    const change::DatabaseMade table = {Path("Web"), "/Config"};
    EXPECT_EQ(LookAt(file, run_).text, "Remove " + Path("Web") + ", if nothing else is stored there");
    EXPECT_EQ(TakeBack(file, run_).left, "In " + Path("Web") + " more is stored: it stays");
    EXPECT_EQ(LookAt(table, run_).standing, Standing::AsLeft);
    Put("Socket", {});
    EXPECT_TRUE(TakeBack(table, run_).left.IsEmpty());
    EXPECT_EQ(LookAt(table, run_).standing, Standing::AsBefore);
    EXPECT_TRUE(TakeBack(file, run_).left.IsEmpty());
    EXPECT_TRUE(ReadDir(Path("")).IsEmpty());
    EXPECT_EQ(LookAt(file, run_).standing, Standing::AsBefore);
    EXPECT_EQ(LookAt(table, run_).standing, Standing::AsBefore);
    EXPECT_TRUE(TakeBack(table, run_).left.IsEmpty());
    EXPECT_TRUE(ReadDir(Path("")).IsEmpty());
}

TEST_F(MadeDatabase, WithASettingStays) {
    Put("Socket", "80");
    const change::DatabaseMade table = {Path("Web"), "/Config"};
    EXPECT_EQ(TakeBack(table, run_).left,
              "In the table /Config of " + Path("Web") + " more is stored: it stays");
    Sdbfile file("Web", 0);
    EXPECT_TRUE(file.Open("/Config", 0));
    EXPECT_EQ(file.Get("Socket"), "80");
}

TEST_F(MadeDatabase, OfAccountsGoesOnceItHasNone) {
    site_.Add("Anna", "anna@example.com");
    const change::DatabaseMade change = {site_.Path(), ""};
    EXPECT_EQ(LookAt(change, run_).standing, Standing::Kept);
    run_.options.accounts = true;
    EXPECT_EQ(LookAt(change, run_).standing, Standing::AsLeft);
    EXPECT_EQ(TakeBack(change, run_).left.Count(), 1U);
    EXPECT_EQ(site_.Uids(), "Anna");
    ASSERT_TRUE(SAccountDBMod().DeleteAccount("Anna"));
    EXPECT_TRUE(TakeBack(change, run_).left.IsEmpty());
    EXPECT_TRUE(ReadDir(Path("")).IsEmpty());
}

}  // namespace
