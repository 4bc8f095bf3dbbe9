#include "support/database/account_store.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "tests/data_directory.h"
#include "tests/refusal.h"

namespace {

class Store : public testing::Test {
  protected:
    bool Add(const SString& uid) { return store_.Bind(uid).is_new; }

    DataDirectory data_;
    AccountStore store_;
};

TEST_F(Store, BindsInsideATransaction) {
    EXPECT_FALSE(store_.IsInTransaction() || store_.IsWritable());
    ASSERT_TRUE(store_.Begin());
    EXPECT_TRUE(store_.IsInTransaction() && store_.IsWritable());
    const AccountStore::Binding made = store_.Bind("Ann");
    EXPECT_TRUE(made.is_new);
    EXPECT_EQ(store_.Bind("Ann").id, made.id);
    EXPECT_FALSE(store_.Bind("Ann").is_new);
    EXPECT_TRUE(store_.End(true));
    EXPECT_FALSE(store_.IsInTransaction() || store_.IsWritable());
    EXPECT_EQ(store_.Find("Ann"), Lookup::Found);
}

TEST_F(Store, TakesBackAtOnceAndWaitsForTheEnd) {
    ASSERT_TRUE(store_.Begin() && Add("Ann"));
    store_.RollBack();
    EXPECT_TRUE(store_.IsInTransaction());
    EXPECT_FALSE(store_.IsWritable());
    EXPECT_EQ(store_.Find("Ann"), Lookup::Missing);
    EXPECT_FALSE(store_.End(true));
    EXPECT_TRUE(store_.Begin() && Add("Ann") && store_.End(true));
}

TEST_F(Store, ReplacesTheFieldsOfAnAccountThatItHasJustMade) {
    SNamedStringList fields;
    bool is_locked = false;
    SString owner;
    ASSERT_TRUE(store_.Begin());
    int64_t ann = store_.Bind("Ann").id;
    EXPECT_TRUE(store_.SetField(ann, "Ann", "SMTP-Address", {"ann@example.com", "a@example.com"}));
    EXPECT_TRUE(store_.SetField(ann, "Ann", "SMTP-Address", "annie@example.com"));
    EXPECT_EQ(store_.FindOwner("ann@example.com", &owner), Lookup::Missing);
    ASSERT_TRUE(store_.Delete("Ann"));
    ann = store_.Bind("Ann").id;
    EXPECT_TRUE(store_.SetField(ann, "Ann", "Name", {"Ann", "Annie"}));
    const int64_t bob = store_.Bind("Bob").id;
    EXPECT_TRUE(store_.SetField(bob, "Bob", "Name", "Bob"));
    EXPECT_TRUE(store_.SetField(ann, "Ann", "Name", "Ann"));
    EXPECT_FALSE(store_.SetField(bob, "Rob", "Password", "x"));  // a deleted account's id is given again
    ASSERT_TRUE(store_.End(true));
    ASSERT_TRUE(store_.Begin() && store_.SetField(bob, "Bob", "Name", "Robert") && store_.End(true));
    EXPECT_EQ(store_.Read("Ann", &fields, &is_locked), Lookup::Found);
    EXPECT_EQ(fields.Get("Name"), SStringList("Ann"));
    EXPECT_EQ(fields.Get("SMTP-Address"), SStringList());
    EXPECT_EQ(store_.Read("Bob", &fields, &is_locked), Lookup::Found);
    EXPECT_EQ(fields.Get("Name"), SStringList("Robert"));
}

TEST_F(Store, GivesANewAccountNoFieldsThatItFinds) {
    ASSERT_TRUE(store_.Begin() && Add("Ann") && store_.End(true));
    const auto other = sqlite::Connection::Open(data_.Config("MTA-Accounts"), sqlite::Mode::Shared);
    ASSERT_TRUE(
        other->Execute("INSERT INTO fields VALUES (2, 'Name', 0, 'x'), (2, 'Name', 1, 'y'),"
                       " (2, 'SMTP-Address', 0, 'old@example.com');"
                       "INSERT INTO addresses VALUES ('old@example.com', 2)"));
    ASSERT_TRUE(store_.Begin());
    const int64_t bob = store_.Bind("Bob").id;
    EXPECT_EQ(bob, 2);
    EXPECT_TRUE(store_.SetField(bob, "Bob", "Name", "Bob"));
    ASSERT_TRUE(store_.End(true));
    SNamedStringList fields;
    bool is_locked = false;
    store_.Read("Bob", &fields, &is_locked);
    EXPECT_EQ(fields.Keys(), SStringList("Name"));
    EXPECT_EQ(fields.Get("Name"), SStringList("Bob"));
    SString owner;
    EXPECT_EQ(store_.FindOwner("old@example.com", &owner), Lookup::Missing);
}

TEST_F(Store, TakesBackWhatIsUnfinishedAtItsEnd) {
    {
        AccountStore other;
        ASSERT_TRUE(other.Begin() && other.Bind("Ann").is_new);
    }
    EXPECT_EQ(data_.Listing(), "MTA-Accounts");
    EXPECT_EQ(store_.Find("Ann"), Lookup::Missing);
}

TEST_F(Store, IsNotWritableOnceTheLibraryHasGivenUp) {
    ASSERT_TRUE(store_.Begin() && Add("Ann") && store_.End(true));
    const auto other = sqlite::Connection::Open(data_.Config("MTA-Accounts"), sqlite::Mode::Shared);
    ASSERT_TRUE(other->Execute(RollBackAtFieldsOfSame("value").CString()));
    ASSERT_TRUE(store_.Begin());
    const AccountStore::Binding bob = store_.Bind("Bob");
    EXPECT_FALSE(store_.SetField(bob.id, "Bob", "Name", {"Bob", "Bob"}));
    EXPECT_TRUE(store_.IsInTransaction());
    EXPECT_FALSE(store_.IsWritable());
    EXPECT_FALSE(store_.End(true));
    EXPECT_EQ(store_.Uids(), SStringList("Ann"));
}

TEST_F(Store, EpochStaysWhileNoUidCanHaveBecomeFree) {
    const AccountStore::Use use(store_);
    ASSERT_TRUE(store_.Begin() && Add("Ann") && store_.End(true));
    uint64_t epoch = store_.Epoch();
    ASSERT_TRUE(store_.Begin() && Add("Bob"));
    EXPECT_EQ(store_.Epoch(), epoch);
    EXPECT_TRUE(store_.End(true));
    EXPECT_EQ(store_.Epoch(), epoch);

    const auto changes = [&] { return std::exchange(epoch, store_.Epoch()) != epoch; };
    ASSERT_TRUE(store_.Begin() && Add("Carol"));
    EXPECT_FALSE(changes());
    store_.RollBack();
    EXPECT_TRUE(changes());
    store_.RollBack();
    EXPECT_FALSE(changes());  // nothing was left to be rolled back
    EXPECT_FALSE(store_.End(true));
    epoch = store_.Epoch();
    ASSERT_TRUE(store_.Begin() && Add("Carol"));
    EXPECT_FALSE(store_.End(false));
    EXPECT_TRUE(changes());
    ASSERT_TRUE(store_.Begin() && store_.Delete("Bob") && store_.End(true));
    EXPECT_TRUE(changes());
    EXPECT_FALSE(changes());
    const auto other = sqlite::Connection::Open(data_.Config("MTA-Accounts"), sqlite::Mode::Shared);
    ASSERT_TRUE(other->Execute("DELETE FROM accounts"));
    EXPECT_TRUE(changes());
}

}  // namespace
