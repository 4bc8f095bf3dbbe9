#include "install/postmaster/admin_accounts.h"

#include <gtest/gtest.h>

#include "support/database/sqlite.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "tests/refusal.h"
#include "tests/temporary_folder.h"

namespace {

// For the case that has root's account made, but cannot find the Postmaster's again.
// Locking root's account removes the Postmaster's, as there may be one locked account only, and the
// Postmaster may be made as the first row of a connection only.
const SString kLosing =
    "DROP TABLE accounts;"
    "CREATE TABLE accounts (id INTEGER PRIMARY KEY, uid TEXT NOT NULL UNIQUE,"
    " locked INTEGER UNIQUE ON CONFLICT REPLACE,"
    " CHECK (uid <> 'Postmaster' OR last_insert_rowid() = 0));";

class PostmasterAccounts : public testing::Test {
  protected:
    PostmasterAccounts() {
        PutEnv("TernHarbor", folder_ / "");
        MakeDir(folder_ / "config", 0700);
    }

    void AddAccount(const SString& uid, const SString& address) {
        SAccountMod account;
        ASSERT_TRUE(accounts_.ModifyAccount(uid, &account) && account.Set("SMTP-Address", address));
    }

    /// Begins anew in this directory, with a database that this SQL has changed.
    void Use(const SString& directory, const SString& change) {
        MakeDir(directory + "/config", 0700);
        PutEnv("TernHarbor", directory);
        AddAccount("Somebody", "somebody@else.example");  // so that there is a database
        const auto connection =
            sqlite::Connection::Open(directory + "/config/MTA-Accounts", sqlite::Mode::Shared);
        ASSERT_TRUE(connection != nullptr && connection->Execute(change.CString()));
    }

    AdminAccounts Make() { return MakeAdminAccounts(&accounts_, "mail.example.com", "example.com"); }
    SStringList Value(const SString& uid, const SString& field) {
        SAccount account;
        accounts_.GetAccountInfo(uid, &account);
        return account.Get(field);
    }
    bool Exists(const SString& uid) { return accounts_.GetAccountInfo(uid, nullptr) != 0; }

    TemporaryFolder folder_;
    SAccountDBMod accounts_;
};

TEST_F(PostmasterAccounts, MakesBoth) {
    const AdminAccounts made = Make();
    EXPECT_EQ(made.outcome, AdminAccountsOutcome::Done);
    EXPECT_TRUE(made.root_was_made);
    const struct {
        const char* uid;
        const char* field;
        SStringList values;
    } cases[] = {
        {"Postmaster", "Name", "Mail Administrator"},
        {"Postmaster", "SMTP-Address", "Postmaster@mail.example.com"},
        {"Postmaster", "SMTP-RewriteStyle", "comment"},
        {"Postmaster", "Manager-Delivery", ""},
        {"Postmaster", "Access-Domains", "example.com"},
        {"Postmaster", "Account-Delivery", "Root"},
        {"Postmaster", "Channel-Delivery", {}},
        {"Root", "Name", "System Administrator"},
        {"Root", "SMTP-Address", "root@mail.example.com"},
        {"Root", "SMTP-RewriteStyle", "comment"},
        {"Root", "UNIX-UserName", "root"},
        {"Root", "Local-Delivery", "UNIX"},
        {"Root", "Access-Domains", "example.com"},
    };
    for (const auto& c : cases) EXPECT_EQ(Value(c.uid, c.field), c.values) << c.uid << " " << c.field;
    for (const char* uid : {"Postmaster", "Root"}) {
        SAccount account;
        ASSERT_TRUE(accounts_.GetAccountInfo(uid, &account));
        EXPECT_TRUE(account.IsLocked());
        EXPECT_EQ(account.Get("Password").Get(0).Length(), 6U);
    }
    EXPECT_NE(Value("Postmaster", "Password"), Value("Root", "Password"));
}

TEST_F(PostmasterAccounts, DeliverToWhoeverOwnsRootsAddress) {
    AddAccount("Charlie_Root", "ROOT@mail.example.com");
    const AdminAccounts made = Make();
    EXPECT_EQ(made.outcome, AdminAccountsOutcome::Done);
    EXPECT_FALSE(made.root_was_made);
    EXPECT_EQ(Value("Postmaster", "Account-Delivery"), SStringList("Charlie_Root"));
    EXPECT_FALSE(Exists("Root"));
}

TEST_F(PostmasterAccounts, LeaveAStrangersRootAlone) {
    AddAccount("Root", "tuber@example.com");
    EXPECT_EQ(Make().outcome, AdminAccountsOutcome::Done);
    EXPECT_EQ(Value("Root", "SMTP-Address"), SStringList("tuber@example.com"));
    EXPECT_EQ(Value("Root1", "SMTP-Address"), SStringList("root@mail.example.com"));
    EXPECT_EQ(Value("Postmaster", "Account-Delivery"), SStringList("Root1"));
}

TEST_F(PostmasterAccounts, AreNeverWrittenOver) {
    AddAccount("Postmaster", "old@example.com");
    EXPECT_EQ(Make().outcome, AdminAccountsOutcome::NoPostmaster);
    EXPECT_EQ(Value("Postmaster", "SMTP-Address"), SStringList("old@example.com"));
    EXPECT_FALSE(Exists("Root"));
}

TEST_F(PostmasterAccounts, StandTogetherOrNotAtAll) {
    const struct {
        SString change;
        AdminAccountsOutcome outcome;
        bool stand;
    } cases[] = {
        {RefuseRows("accounts", "uid = 'Postmaster'"), AdminAccountsOutcome::NoPostmaster, false},
        {RefuseRows("fields", "value = 'Mail Administrator'"), AdminAccountsOutcome::NoPostmaster, false},
        {RefuseRows("accounts", "uid = 'Root'"), AdminAccountsOutcome::NoRoot, false},
        {RefuseRows("fields", "value = 'UNIX'"), AdminAccountsOutcome::NoRoot, false},
        {kLosing, AdminAccountsOutcome::NotReopened, false},
        {RefuseRows("fields", "name = 'Account-Delivery'"), AdminAccountsOutcome::NotDelivered, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.change.CString());
        const TemporaryFolder folder;
        Use(folder / "", c.change);
        EXPECT_EQ(Make().outcome, c.outcome);
        EXPECT_EQ(Exists("Postmaster"), c.stand);
        EXPECT_EQ(Exists("Root"), c.stand);
        EXPECT_TRUE(Value("Postmaster", "Account-Delivery").IsEmpty());
    }
}

TEST_F(PostmasterAccounts, NeedADatabase) {
    folder_.Write("config/MTA-Accounts", "damaged");
    EXPECT_EQ(Make().outcome, AdminAccountsOutcome::NoPostmaster);
    EXPECT_EQ(MapFileRead(folder_ / "config/MTA-Accounts"), "damaged");
}

}  // namespace
