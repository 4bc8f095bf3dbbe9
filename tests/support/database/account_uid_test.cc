#include <gtest/gtest.h>

#include "support/database/account.h"
#include "support/database/sqlite.h"
#include "tests/data_directory.h"

namespace {

class AccountUid : public testing::Test {
  protected:
    void Make(const SString& uid) {
        SAccountMod account;
        ASSERT_TRUE(accounts_.ModifyAccount(uid, &account));
    }
    SString MakeNext(const SString& name) {
        const SString uid = GenerateAccountUID(name);
        Make(uid);
        return uid;
    }

    DataDirectory data_;
    SAccountDBMod accounts_;
};

TEST_F(AccountUid, IsMadeFromTheName) {
    const struct {
        SString name;
        SString uid;
    } cases[] = {
        {"John Q. Public", "John_Q_Public"},
        {"---", "_"},
        {"", ""},
        {"jones", "jones"},
        {"under_score 9", "under_score_9"},
        {"J\xc3\xb6rg", "J_rg"},
        {SString(std::string("a\0b\nc", 5)), "a_b_c"},
        {"Postmaster", "Postmaster1"},
        {"postmaster", "postmaster"},
        {"Post-master", "Post_master"},
    };
    for (const auto& c : cases) EXPECT_EQ(GenerateAccountUID(c.name), c.uid) << c.name;
}

TEST_F(AccountUid, IsNumberedWhereTheNameIsTaken) {
    EXPECT_EQ(MakeNext("John Smith"), "John_Smith");
    EXPECT_EQ(GenerateAccountUID("John Smith"), "John_Smith1");
    EXPECT_EQ(GenerateAccountUID("John Smith"), "John_Smith1");  // not yet taken
    EXPECT_EQ(MakeNext("John Smith"), "John_Smith1");
    EXPECT_EQ(MakeNext("John, Smith"), "John_Smith2");
    Make("John_Smith4");
    EXPECT_EQ(MakeNext("John Smith"), "John_Smith3");
    EXPECT_EQ(MakeNext("John Smith"), "John_Smith5");
    EXPECT_EQ(MakeNext("Postmaster"), "Postmaster1");
    EXPECT_EQ(MakeNext("Postmaster"), "Postmaster2");
}

TEST_F(AccountUid, IsTheFirstThatIsFree) {
    for (int i = 0; i < 10; ++i) MakeNext("Ann");
    EXPECT_EQ(GenerateAccountUID("Ann"), "Ann10");
    ASSERT_TRUE(accounts_.DeleteAccount("Ann3"));
    EXPECT_EQ(MakeNext("Ann"), "Ann3");
    EXPECT_EQ(GenerateAccountUID("Ann"), "Ann10");
    ASSERT_TRUE(accounts_.DeleteAccount("Ann"));
    EXPECT_EQ(MakeNext("Ann"), "Ann");
    {
        const AccountTransaction taken_back;
        EXPECT_EQ(MakeNext("Ann"), "Ann10");
        EXPECT_EQ(MakeNext("Ann"), "Ann11");
    }
    EXPECT_EQ(GenerateAccountUID("Ann"), "Ann10");
    const auto other = sqlite::Connection::Open(data_.Config("MTA-Accounts"), sqlite::Mode::Shared);
    ASSERT_TRUE(other->Execute("DELETE FROM accounts WHERE uid = 'Ann5'"));
    EXPECT_EQ(GenerateAccountUID("Ann"), "Ann5");
    const DataDirectory elsewhere;
    EXPECT_EQ(MakeNext("Ann"), "Ann");
    EXPECT_EQ(GenerateAccountUID("Ann"), "Ann1");
}

TEST_F(AccountUid, PasswordCanBePronounced) {
    std::string seen;
    for (int i = 0; i < 3000; ++i) {
        const SString password = GeneratePassword();
        EXPECT_TRUE(password.Matches("^[bcdlmnprst][aeio][bcdlmnprst][aeio][bcdlmnprst][1-9]\\z"))
            << password;
        seen += password.Bytes();
    }
    for (const char c : std::string("bcdlmnprstaeio123456789"))
        EXPECT_NE(seen.find(c), std::string::npos) << c;
}

}  // namespace
