#include "install/postmaster/deliveries.h"

#include <gtest/gtest.h>

#include "support/database/sqlite.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "tests/refusal.h"
#include "tests/temporary_folder.h"

namespace {

class PostmasterDeliveries : public testing::Test {
  protected:
    PostmasterDeliveries() {
        PutEnv("TernHarbor", folder_ / "");
        MakeDir(folder_ / "config", 0700);
        AddAccount("Root", {"root@mail.example.com", "root@[192.0.2.25]"});
        AddAccount("Anna_Berg", {"anna@mail.example.com", "Anna.Berg@Example.com"});
        AddAccount("No_Address", {});
        accounts_.ModifyAccount("Postmaster", postmaster_.get());
        postmaster_->Set("Account-Delivery", "Root");
    }
    void AddAccount(const SString& uid, const SStringList& addresses) {
        SAccountMod account;
        ASSERT_TRUE(accounts_.ModifyAccount(uid, &account) && account.Set("SMTP-Address", addresses));
    }
    Deliveries Current() {
        SAccount record;
        accounts_.GetAccountInfo("Postmaster", &record);
        return DeliveriesOf(record);
    }
    void Execute(const char* sql) {
        const auto connection =
            sqlite::Connection::Open(folder_ / "config/MTA-Accounts", sqlite::Mode::Shared);
        ASSERT_TRUE(connection != nullptr && connection->Execute(sql));
    }
    TemporaryFolder folder_;
    SAccountDBMod accounts_;
    // Not a plain member: g++ sees a doubtful move of its virtual base in the fixture then.
    std::unique_ptr<SAccountMod> postmaster_ = std::make_unique<SAccountMod>();
};

TEST_F(PostmasterDeliveries, AreShownAsAddresses) {
    const Deliveries deliveries{{"Anna_Berg", "Gone", "No_Address", "Root"},
                                {"SMTP carla@far.example", "SMTP <dora@far.example>",
                                 "SMTP <@relay.example:emil@far.example>", "FAX 555"}};
    EXPECT_EQ(DeliveryAddresses(&accounts_, deliveries),
              SStringList({"anna@mail.example.com", "root@mail.example.com", "carla@far.example",
                           "dora@far.example", "<@relay.example:emil@far.example>", "FAX 555"}));
}

TEST_F(PostmasterDeliveries, AreNotShownInPart) {
    const Deliveries deliveries{{"Anna_Berg"}, {"SMTP carla@far.example"}};
    Execute("DROP TABLE fields");
    EXPECT_EQ(DeliveryAddresses(&accounts_, deliveries), std::nullopt);
}

TEST_F(PostmasterDeliveries, AreChosenByAddress) {
    const SString not_local = "Address doesn't refer to a local account: ";
    const struct {
        const char* entry;
        SString account;
        SString channel;
        SString refusal;
    } cases[] = {
        {"anna", "Anna_Berg", "", ""},
        {"ANNA@Mail.Example.COM", "Anna_Berg", "", ""},
        {"anna@mail", "Anna_Berg", "", ""},
        {"<@relay.example:anna@mail.example.com>", "Anna_Berg", "", ""},
        {"root@[192.0.2.25]", "Root", "", ""},
        {"carla@far.example", "", "SMTP carla@far.example", ""},
        {"<Carla@Far.example>", "", "SMTP Carla@Far.example", ""},
        {"carla@far", "", "SMTP carla@far.example.com", ""},
        {"nobody", "", "", not_local + "nobody@mail.example.com"},
        {"nobody@mail", "", "", not_local + "nobody@mail.example.com"},
        {"Nobody@EXAMPLE.com", "", "", not_local + "Nobody@EXAMPLE.com"},
        {"nobody@[192.0.2.25]", "", "", not_local + "nobody@[192.0.2.25]"},
        {"", "", "", "Null address ignored."},
        {"<>", "", "", "Null address ignored."},
        {"two words", "", "", "Invalid address ignored: two words"},
        {"a@b@c", "", "", "Invalid address ignored: a@b@c"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.entry);
        SStringList refusals;
        const auto chosen =
            ChooseDeliveries(&accounts_, SString(c.entry), "mail.example.com", "example.com", &refusals);
        ASSERT_TRUE(chosen);
        EXPECT_EQ(chosen->accounts, c.account.IsEmpty() ? SStringList() : SStringList(c.account));
        EXPECT_EQ(chosen->channels, c.channel.IsEmpty() ? SStringList() : SStringList(c.channel));
        EXPECT_EQ(refusals, c.refusal.IsEmpty() ? SStringList() : SStringList(c.refusal));
    }
}

TEST_F(PostmasterDeliveries, KeepTheirOrder) {
    SStringList refusals;
    const auto chosen = ChooseDeliveries(&accounts_, {"root", "x@b.example", "<>", "anna", "x@a.example"},
                                         "mail.example.com", "example.com", &refusals);
    EXPECT_EQ(chosen, (Deliveries{{"Root", "Anna_Berg"}, {"SMTP x@b.example", "SMTP x@a.example"}}));
    EXPECT_EQ(refusals.Count(), 1U);
}

TEST_F(PostmasterDeliveries, AreNotChosenFromAccountsThatCannotBeAsked) {
    folder_.Write("config/Damaged", "no database");
    Rename(folder_ / "config/Damaged", folder_ / "config/MTA-Accounts");
    RemoveFile(folder_ / "config/MTA-Accounts-wal");
    SStringList refusals;
    EXPECT_FALSE(ChooseDeliveries(&accounts_, SString("anna"), "mail.example.com", "example.com", &refusals));
}

TEST_F(PostmasterDeliveries, AreReplaced) {
    const Deliveries next{{}, {"SMTP carla@far.example"}};
    EXPECT_EQ(ReplaceDeliveries(&accounts_, postmaster_.get(), Current(), next), Replacement::Done);
    EXPECT_EQ(Current(), next);
}

TEST_F(PostmasterDeliveries, AreRetainedWhenTheNewOnesAreRefused) {
    Execute(RefuseRows("fields", "value = 'SMTP carla@far.example'").CString());
    const Deliveries old = Current();
    const Deliveries next{{"Anna_Berg"}, {"SMTP carla@far.example"}};
    EXPECT_EQ(ReplaceDeliveries(&accounts_, postmaster_.get(), old, next), Replacement::OldRetained);
    EXPECT_EQ(Current(), old);
}

TEST_F(PostmasterDeliveries, AreLostWithTheAccount) {
    const Deliveries old = Current();
    accounts_.DeleteAccount("Postmaster");
    EXPECT_EQ(ReplaceDeliveries(&accounts_, postmaster_.get(), old, {"Anna_Berg", {}}), Replacement::OldLost);
}

}  // namespace
