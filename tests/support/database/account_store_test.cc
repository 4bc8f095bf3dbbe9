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
