#include <gtest/gtest.h>

#include "install/settings.h"
#include "install/steps.h"
#include "support/database/account.h"
#include "support/database/sqlite.h"
#include "support/system/environment.h"
#include "tests/data_directory.h"
#include "tests/refusal.h"

namespace {

const char* const kUids[] = {"Configuration-Manager", "Account-Manager", "Error-Handler", "Default"};

class SpecialAccounts : public testing::Test {
  protected:
    SpecialAccounts() {
        gstr_HostName = "mail.example.com";
        gstr_DomainName = "example.com";
        gstr_IpAddress = "[192.0.2.1]";
    }
    SAccount Read(const SString& uid) {
        SAccount account;
        EXPECT_TRUE(accounts_.GetAccountInfo(uid, &account)) << uid;
        return account;
    }
    SString Password(const SString& uid) { return Read(uid).Get("Password").Get(0); }

    DataDirectory data_;
    SAccountDBMod accounts_;
};

TEST_F(SpecialAccounts, HaveTheirFields) {
    EXPECT_TRUE(SetupSpecialAccounts());
    EXPECT_EQ(accounts_.AccountUIDList(), SStringList({kUids[0], kUids[1], kUids[2], kUids[3]}));
    const struct {
        const char* uid;
        const char* field;
        SStringList values;
    } cases[] = {
        {kUids[0], "Name", "Configuration Manager"},
        {kUids[0], "Manager-Delivery", "Configuration-Manager"},
        {kUids[0], "SMTP-Address", {"Configuration@[192.0.2.1]", "Configuration@mail.example.com"}},
        {kUids[1], "Name", "Account Manager"},
        {kUids[1], "Manager-Delivery", "Account-Manager"},
        {kUids[1],
         "SMTP-Address",
         {"Accounts@[192.0.2.1]", "Accounts@mail.example.com", "Account@mail.example.com"}},
        {kUids[2], "Name", "Error Handler"},
        {kUids[2], "Manager-Delivery", "Error-Handler"},
        {kUids[2], "SMTP-Address", "Error-Handler@[192.0.2.1]"},
        {kUids[3], "SMTP-RewriteStyle", "comment"},
        {kUids[3], "Access-Domains", "example.com"},
        {kUids[3], "Name", "Name"},
        {kUids[3], "Password", "Lock"},
        {kUids[3], "SMTP-Address", "user@mail.example.com"},
        {kUids[3], "Local-Delivery", "UNIX"},
        {kUids[3], "UNIX-UserName", "userid"},
    };
    for (const auto& c : cases) EXPECT_EQ(Read(c.uid).Get(c.field), c.values) << c.uid << " " << c.field;
    for (const char* uid : kUids) {
        const SAccount account = Read(uid);
        const bool is_manager = SString(uid) != "Default";
        EXPECT_EQ(account.Fields().Count(), 7U) << uid;
        EXPECT_EQ(account.IsLocked(), is_manager) << uid;
        EXPECT_EQ(account.Get("SMTP-RewriteStyle"), SStringList("comment")) << uid;
        EXPECT_EQ(account.Get("Finger-Access"), is_manager ? SStringList("none") : SStringList()) << uid;
        EXPECT_EQ(account.Get("Access-Domains"), SStringList(is_manager ? "none" : "example.com")) << uid;
    }
    EXPECT_EQ(accounts_.GetAccountUID(SString("configuration@mail.EXAMPLE.com")), "Configuration-Manager");
    EXPECT_EQ(accounts_.GetAccountUID(SString("error-handler@[192.0.2.1]")), "Error-Handler");
    EXPECT_EQ(accounts_.GetAccountUID(SString("error-handler@mail.example.com")), "");
}

TEST_F(SpecialAccounts, EachManagerHasAPasswordOfItsOwn) {
    SetupSpecialAccounts();
    SStringList passwords;
    for (const char* uid : {kUids[0], kUids[1], kUids[2]}) {
        passwords.Push(Password(uid));
        EXPECT_TRUE(Password(uid).Matches("^[bcdlmnprst][aeio][bcdlmnprst][aeio][bcdlmnprst][1-9]\\z"))
            << uid;
    }
    passwords.Sort();
    passwords.Unique();
    EXPECT_EQ(passwords.Count(), 3U);
}

TEST_F(SpecialAccounts, StayAsTheyAreOnASecondRun) {
    SetupSpecialAccounts();
    SAccountMod edited;
    ASSERT_TRUE(accounts_.ModifyAccount("Default", &edited) && edited.Set("Name", "Somebody"));
    const auto other = sqlite::Connection::Open(data_.Config("MTA-Accounts"), sqlite::Mode::Shared);
    const auto before = other->Value("PRAGMA data_version");
    const SString password = Password("Error-Handler");
    gstr_HostName = "other.example.com";
    EXPECT_TRUE(SetupSpecialAccounts());
    EXPECT_EQ(Password("Error-Handler"), password);
    EXPECT_EQ(Read("Default").Get("Name"), SStringList("Somebody"));
    EXPECT_EQ(other->Value("PRAGMA data_version"), before);
}

TEST_F(SpecialAccounts, OnlyTheMissingOneIsMade) {
    SetupSpecialAccounts();
    const SString password = Password("Account-Manager");
    ASSERT_TRUE(accounts_.DeleteAccount("Default"));
    EXPECT_TRUE(SetupSpecialAccounts());
    EXPECT_EQ(Read("Default").Get("Password"), SStringList("Lock"));
    EXPECT_EQ(Password("Account-Manager"), password);
}

TEST_F(SpecialAccounts, AreWholeOrAbsentWhereTheDatabaseRefuses) {
    SAccountMod somebody;
    ASSERT_TRUE(accounts_.ModifyAccount("Somebody", &somebody));
    const auto other = sqlite::Connection::Open(data_.Config("MTA-Accounts"), sqlite::Mode::Shared);
    ASSERT_TRUE(other->Execute(RefuseRows("fields", "value = 'Account Manager'").CString()));
    EXPECT_TRUE(SetupSpecialAccounts());
    EXPECT_EQ(accounts_.AccountUIDList(), SStringList({"Somebody", kUids[0], kUids[2], kUids[3]}));
    ASSERT_TRUE(other->Execute("DROP INDEX refuse"));
    EXPECT_TRUE(SetupSpecialAccounts());
    EXPECT_EQ(accounts_.AccountCount(), 5);
}

TEST_F(SpecialAccounts, AreNoReasonToStop) {
    data_.WriteConfig("MTA-Accounts", "damaged");
    EXPECT_TRUE(SetupSpecialAccounts());
    EXPECT_EQ(MapFileRead(data_.Config("MTA-Accounts")), "damaged");
    PutEnv("TernHarbor", data_.Path() + "nowhere");
    EXPECT_TRUE(SetupSpecialAccounts());
}

}  // namespace
