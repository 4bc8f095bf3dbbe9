#include "install/accounts/new_account.h"

#include "tests/install/account_database.h"

namespace {

NewAccount Jones() {
    return {"Jones Smith",
            "jones",
            {"jones@example.com", "jones@mail.example.com"},
            "example.com",
            "Plan:\r\n----"};
}

class MakeOneAccount : public testing::Test {
  protected:
    AccountOutcome Make(const NewAccount& account) { return MakeAccount(account, &made_); }
    AccountDatabase database_;
    SString made_;
};

TEST_F(MakeOneAccount, WritesEveryField) {
    ASSERT_EQ(Make(Jones()), AccountOutcome::Created);
    EXPECT_TRUE(made_.Matches("^Jones_Smith [bcdlmnprst][aeio][bcdlmnprst][aeio][bcdlmnprst][1-9]$"))
        << made_;
    const struct {
        const char* field;
        SStringList values;
    } cases[] = {
        {"Name", "Jones Smith"},
        {"Password", made_.Split(' ').Get(1)},
        {"Local-Delivery", "UNIX"},
        {"UNIX-UserName", "jones"},
        {"SMTP-Address", {"jones@example.com", "jones@mail.example.com"}},
        {"SMTP-RewriteStyle", "comment"},
        {"Access-Domains", "example.com"},
        {"Finger-Info", "Plan:\r\n----"},
    };
    for (const auto& c : cases) EXPECT_EQ(database_.Values("Jones_Smith", c.field), c.values) << c.field;
    SAccount account;
    ASSERT_TRUE(SAccountDB().GetAccountInfo("Jones_Smith", &account));
    EXPECT_EQ(account.Fields().Count(), std::size(cases));
    EXPECT_FALSE(account.IsLocked());
}

TEST_F(MakeOneAccount, KeepsAnEmptyFingerInfoAsOneValue) {
    NewAccount account = Jones();
    account.finger_info = "";
    ASSERT_EQ(Make(account), AccountOutcome::Created);
    EXPECT_EQ(database_.Values("Jones_Smith", "Finger-Info"), SStringList(""));
}

TEST_F(MakeOneAccount, LeavesTheOwnerOfAnAddressAlone) {
    database_.Add("Somebody", "JONES@Mail.Example.com");
    EXPECT_EQ(Make(Jones()), AccountOutcome::Exists);
    EXPECT_EQ(database_.Uids(), SStringList("Somebody"));
}

TEST_F(MakeOneAccount, NumbersAccountsOfOneName) {
    for (const char* login : {"a", "b", "c"}) {
        NewAccount account = Jones();
        account.login = login;
        account.addresses = SString(login) + "@example.com";
        EXPECT_EQ(Make(account), AccountOutcome::Created);
    }
    EXPECT_EQ(database_.Uids(), SStringList({"Jones_Smith", "Jones_Smith1", "Jones_Smith2"}));
}

TEST_F(MakeOneAccount, TakesOnlyLoginsThatCanBeAddressed) {
    for (const char* login :
         {"", "a b", "a(b", "a<b>", "a@b", "\"a\"", "a\\b", "@a:b", ".a", "a.", "a\r", "\xc3\xa9"}) {
        EXPECT_FALSE(IsLocalPart(login)) << login;
        NewAccount account = Jones();
        account.login = login;
        account.addresses = SString(login) + "@example.com";
        EXPECT_EQ(Make(account), AccountOutcome::Failed) << login;
    }
    for (const char* login : {"a", "A", "a.b", "a-b_c", "a/b", "+a", "-a", "a$1", "o'neil", "9lives"}) {
        EXPECT_TRUE(IsLocalPart(login)) << login;
    }
    EXPECT_TRUE(database_.Uids().IsEmpty());
}

TEST_F(MakeOneAccount, MakesNoneWhereNoAddressIsOne) {
    NewAccount account = Jones();
    account.addresses = {"jones@corp-", "jones@mail.corp-"};
    EXPECT_EQ(Make(account), AccountOutcome::Failed);
    EXPECT_TRUE(database_.Uids().IsEmpty());
    account.addresses.Push("jones@example.com");
    EXPECT_EQ(Make(account), AccountOutcome::Created);
    EXPECT_EQ(Make(account), AccountOutcome::Exists);
}

TEST_F(MakeOneAccount, KeepsTheFieldsInFrontOfARefusedOne) {
    database_.Refuse("name = 'UNIX-UserName'");
    EXPECT_EQ(Make(Jones()), AccountOutcome::Failed);
    SAccount account;
    ASSERT_TRUE(SAccountDB().GetAccountInfo("Jones_Smith", &account));
    EXPECT_EQ(account.Fields().Count(), 3U);
    EXPECT_EQ(account.Get("Name"), "Jones Smith");
    EXPECT_EQ(account.Get("Local-Delivery"), "UNIX");
}

TEST_F(MakeOneAccount, MakesNoneWhereTheFirstFieldIsRefused) {
    database_.Refuse("name = 'Name'");
    EXPECT_EQ(Make(Jones()), AccountOutcome::Failed);
    EXPECT_EQ(database_.Uids(), SStringList("Somebody"));
}

TEST_F(MakeOneAccount, InABatchLastsWithTheBatch) {
    for (const bool is_committed : {false, true}) {
        AccountTransaction batch;
        EXPECT_EQ(MakeAccountInBatch(Jones(), &made_), AccountOutcome::Created);
        EXPECT_EQ(MakeAccountInBatch(Jones(), &made_), AccountOutcome::Exists);
        EXPECT_TRUE(!is_committed || batch.Commit());
    }
    EXPECT_EQ(database_.Uids(), SStringList("Jones_Smith"));
    EXPECT_EQ("Jones_Smith " + database_.Values("Jones_Smith", "Password").Get(0), made_);
}

TEST_F(MakeOneAccount, RefusedInABatchTakesTheBatchBack) {
    database_.Refuse("value = 'jones'");
    AccountTransaction batch;
    NewAccount other = Jones();
    other.login = "other";
    other.addresses = "other@example.com";
    EXPECT_EQ(MakeAccountInBatch(other, &made_), AccountOutcome::Created);
    EXPECT_EQ(MakeAccountInBatch(Jones(), &made_), AccountOutcome::Failed);
    EXPECT_FALSE(batch.Commit());
    EXPECT_EQ(database_.Uids(), SStringList("Somebody"));
}

TEST_F(MakeOneAccount, OnlyExistsInABatchThatCouldNotBegin) {
    database_.Add("Jones_Smith", "jones@example.com");
    const auto other = sqlite::Connection::Open(database_.Path(), sqlite::Mode::Shared);
    ASSERT_NE(other, nullptr);
    const sqlite::Transaction writing(*other);
    const AccountTransaction batch;
    EXPECT_FALSE(batch.IsOpen());
    EXPECT_EQ(MakeAccountInBatch(Jones(), &made_), AccountOutcome::Exists);
    NewAccount free = Jones();
    free.addresses = "free@example.com";
    EXPECT_EQ(MakeAccountInBatch(free, &made_), AccountOutcome::Failed);
}

TEST_F(MakeOneAccount, FailsWithoutADatabaseToWrite) {
    ASSERT_EQ(rmdir((database_.Folder() / "config").CString()), 0);
    EXPECT_EQ(Make(Jones()), AccountOutcome::Failed);
}

TEST_F(MakeOneAccount, FailsOnADamagedDatabaseAndLeavesItAlone) {
    const SString garbage = "this is no database" + SString('x', 5000);
    database_.Folder().Write("config/MTA-Accounts", garbage);
    EXPECT_EQ(Make(Jones()), AccountOutcome::Failed);
    EXPECT_EQ(MapFileRead(database_.Path()), garbage);
}

TEST_F(MakeOneAccount, NeverWritesOverAnAccountThatCannotBeLookedUp) {
    // The index of addresses is damaged: who owns one cannot be told.
    database_.Add("Jones_Smith", "jones@example.com");
    database_.Execute("ALTER TABLE addresses RENAME TO gone");
    EXPECT_EQ(Make(Jones()), AccountOutcome::Failed);
    EXPECT_EQ(database_.Values("Jones_Smith", "SMTP-Address"), "jones@example.com");
    EXPECT_TRUE(database_.Values("Jones_Smith", "Name").IsEmpty());
}

TEST_F(MakeOneAccount, SeesAnExistingAccountWhileAnotherProcessWrites) {
    database_.Add("Jones_Smith", "jones@example.com");
    const auto other = sqlite::Connection::Open(database_.Path(), sqlite::Mode::Shared);
    ASSERT_NE(other, nullptr);
    const sqlite::Transaction writing(*other);
    ASSERT_TRUE(writing.IsOpen());
    EXPECT_EQ(Make(Jones()), AccountOutcome::Exists);
}

}  // namespace
