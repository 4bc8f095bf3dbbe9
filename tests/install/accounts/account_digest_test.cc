#include "install/accounts/account_digest.h"

#include <gtest/gtest.h>

#include "install/accounts/account_batch.h"
#include "tests/install/account_database.h"
#include "tests/install/record/recording.h"

namespace {

const AccountFields kFields = {{"Name", "Anna Berg"},
                               {"Password", "secret"},
                               {"SMTP-Address", {"anna@example.com", "Anna@Mail.Example.com"}},
                               {"Manager-Delivery", ""},
                               {"Nothing", {}},
                               {"Finger-Info", "caf\xE9\r\n"}};

SAccount Account(const SString& uid) {
    SAccount account;
    EXPECT_EQ(SAccountDB().Find(uid, &account), Lookup::Found);
    return account;
}

TEST(AccountDigest, IsTheSameOfTheAccountThatIsReadBack) {
    AccountDatabase database;
    for (const auto lock : {AccountLock::Open, AccountLock::Locked}) {
        const SString uid = lock == AccountLock::Open ? "Anna" : "Berg";
        AccountBatch batch;
        ASSERT_TRUE(CreateAccount(uid, kFields, lock) && batch.Commit());
        EXPECT_EQ(AccountDigest("key", kFields, lock), AccountDigest("key", Account(uid)));
    }
    EXPECT_NE(AccountDigest("key", Account("Anna")), AccountDigest("key", Account("Berg")));
    EXPECT_NE(AccountDigest("key", Account("Anna")), AccountDigest("other", Account("Anna")));
}

TEST(AccountDigest, DoesNotDependOnTheOrderOfFields) {
    EXPECT_EQ(AccountDigest("", {{"A", "1"}, {"B", "2"}}, AccountLock::Open),
              AccountDigest("", {{"B", "2"}, {"A", "1"}}, AccountLock::Open));
    EXPECT_NE(AccountDigest("", {{"A", {"1", "2"}}}, AccountLock::Open),
              AccountDigest("", {{"A", {"2", "1"}}}, AccountLock::Open));
    EXPECT_NE(AccountDigest("", {{"A", ""}}, AccountLock::Open), AccountDigest("", {}, AccountLock::Open));
    EXPECT_NE(AccountDigest("", {{"A", {"1", "1:B2;1:1"}}}, AccountLock::Open),
              AccountDigest("", {{"A", "1"}, {"B", "1"}}, AccountLock::Open));
}

TEST(AccountBatch, IsRecordedOnceItIsCommitted) {
    AccountDatabase database;
    const Recording recording;
    {
        AccountBatch batch;
        CreateAccount("Lost", kFields, AccountLock::Open);
    }
    AccountBatch batch;
    CreateAccount("Anna", kFields, AccountLock::Open);
    CreateAccount("Berg", kFields, AccountLock::Locked);
    EXPECT_TRUE(batch.Commit());
    const auto changes = recording.Changes();
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(std::get<change::DatabaseMade>(changes[0]).table, "");
    const auto& made = std::get<change::AccountsMade>(changes[1]).accounts;
    ASSERT_EQ(made.size(), 2U);
    EXPECT_EQ(made[0].uid, "Anna");
    EXPECT_EQ(made[0].digest, AccountDigest(RecordKey(), Account("Anna")));
    EXPECT_EQ(made[1].digest, AccountDigest(RecordKey(), Account("Berg")));
}

TEST(RecordEdit, EndsTheRecordWhereTheAccountCannotBeRead) {
    AccountDatabase database;
    database.Add("Anna", "anna@example.com");
    const Recording recording;
    RecordEdit("Nobody", {{"Password", "new"}});
    EXPECT_TRUE(IsRecording());
    database.Folder().Write("config/MTA-Accounts", SString('x', 4096));
    RecordEdit("Anna", {{"Password", "new"}});
    EXPECT_FALSE(IsRecording());
}

TEST(RecordEdit, HasTheDigestOfTheAccountAfterIt) {
    AccountDatabase database;
    database.Add("Anna", "anna@example.com");
    const Recording recording;
    RecordEdit("Anna", {{"Password", "new"}, {"SMTP-Address", {}}});
    RecordEdit("Nobody", {{"Password", "new"}});
    SAccountDBMod accounts;
    SAccountMod account;
    ASSERT_TRUE(accounts.ModifyAccount("Anna", &account) && account.Set("Password", "new") &&
                account.Set("SMTP-Address", {}));
    const auto edit = recording.Only<change::AccountEdited>();
    EXPECT_EQ(edit.account.uid, "Anna");
    EXPECT_EQ(edit.account.digest, AccountDigest(RecordKey(), Account("Anna")));
    EXPECT_EQ(edit.fields, SStringList({"Password", "SMTP-Address"}));
}

}  // namespace
