#include "install/accounts/create_account.h"

#include "tests/install/account_database.h"

namespace {

const AccountFields kFields = {{"Name", "Ann"}, {"SMTP-Address", {"ann@a.example", "ann@b.example"}}};

class CreateOneAccount : public testing::Test {
  protected:
    AccountDatabase database_;
};

TEST_F(CreateOneAccount, WritesFieldsAndLock) {
    for (const AccountLock lock : {AccountLock::Open, AccountLock::Locked}) {
        const SString uid = lock == AccountLock::Open ? "Ann" : "Anna";
        AccountTransaction transaction;
        ASSERT_TRUE(CreateAccount(uid, kFields, lock));
        ASSERT_TRUE(transaction.Commit());
        SAccount account;
        ASSERT_TRUE(SAccountDB().GetAccountInfo(uid, &account));
        EXPECT_EQ(account.Fields(), SStringList({"Name", "SMTP-Address"}));
        EXPECT_EQ(account.Get("SMTP-Address"), SStringList({"ann@a.example", "ann@b.example"}));
        EXPECT_EQ(account.IsLocked(), lock == AccountLock::Locked);
    }
}

TEST_F(CreateOneAccount, NeverWritesOver) {
    database_.Add("Ann", "old@example.com");
    size_t refused = 7;
    AccountTransaction transaction;
    EXPECT_FALSE(CreateAccount("Ann", kFields, AccountLock::Locked, &refused));
    EXPECT_TRUE(transaction.Commit());
    EXPECT_EQ(refused, 7U);
    SAccount account;
    ASSERT_TRUE(SAccountDB().GetAccountInfo("Ann", &account));
    EXPECT_EQ(account.Fields(), SStringList("SMTP-Address"));
    EXPECT_EQ(account.Get("SMTP-Address"), "old@example.com");
    EXPECT_FALSE(account.IsLocked());
}

TEST_F(CreateOneAccount, TellsWhichFieldIsRefused) {
    database_.Refuse("value = 'ann@b.example'");
    size_t refused = 7;
    AccountTransaction transaction;
    EXPECT_FALSE(CreateAccount("Ann", kFields, AccountLock::Open, &refused));
    EXPECT_FALSE(transaction.Commit());
    EXPECT_EQ(refused, 1U);
    EXPECT_EQ(database_.Uids(), SStringList("Somebody"));
}

TEST_F(CreateOneAccount, FailsWhereTheLockIsRefused) {
    database_.Add("Somebody", "somebody@else.example");
    database_.Execute(RefuseRows("accounts", "locked"));
    size_t refused = 7;
    AccountTransaction transaction;
    EXPECT_FALSE(CreateAccount("Ann", kFields, AccountLock::Locked, &refused));
    EXPECT_FALSE(transaction.Commit());
    EXPECT_EQ(refused, 7U);
    EXPECT_EQ(database_.Uids(), SStringList("Somebody"));
}

}  // namespace
