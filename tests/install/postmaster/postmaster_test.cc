// The whole dialogue of the Postmaster's step; its questions have tests of their own.
#include "install/console.h"
#include "install/settings.h"
#include "install/steps.h"
#include "tests/dialogue.h"
#include "tests/install/account_database.h"

namespace {

class Postmaster : public testing::Test {
  protected:
    Postmaster() {
        gstr_HostName = "mail.example.com";
        gstr_DomainName = "example.com";
        gstrl_Reminders.Reset();
    }
    ~Postmaster() override {
        gf_Killed = 0;
        gstrl_Reminders.Reset();
    }
    bool Run(const SString& answers) {
        const Dialogue dialogue(answers);
        const bool goes_on = SetupAdminAccount();
        screen_ = dialogue.Screen();
        return goes_on;
    }
    bool Shows(const SString& text) const { return screen_.Bytes().find(text.Bytes()) != std::string::npos; }
    SStringList Value(const SString& field) { return database_.Values("Postmaster", field); }

    AccountDatabase database_;
    SString screen_;
};

TEST_F(Postmaster, IsSetUp) {
    EXPECT_TRUE(Run("sixsix\n10.0.0.0/8\nroot, carla@far.example\n"));
    EXPECT_TRUE(screen_.StartsWith("Checking for Postmaster account.... not found\nCreating Postmaster"));
    EXPECT_TRUE(screen_.EndsWith("Postmaster account setup completed.\n\n")) << screen_;
    EXPECT_EQ(Value("Password"), "sixsix");
    EXPECT_EQ(Value("Access-Domains"), "10.0.0.0/8");
    EXPECT_EQ(Value("Account-Delivery"), "Root");
    EXPECT_EQ(Value("Channel-Delivery"), "SMTP carla@far.example");
    EXPECT_TRUE(gstrl_Reminders.IsEmpty());
}

TEST_F(Postmaster, IsShownAndLeftAloneUnlessItIsToChange) {
    ASSERT_TRUE(Run("sixsix\n\n\n"));
    for (const char* answer : {"no\n", "maybe\n", ""}) {
        EXPECT_TRUE(Run(answer));
        EXPECT_TRUE(Shows("Access Domains:  example.com\n")) << screen_;
        EXPECT_TRUE(Shows("Postmasters:     root@mail.example.com\n")) << screen_;
        EXPECT_FALSE(Shows("sixsix"));
    }
    EXPECT_FALSE(Run("quit\n"));
    EXPECT_TRUE(Run("yes\nbetter password\n\ncarla@far.example\n"));
    EXPECT_EQ(Value("Password"), "better password");
    EXPECT_TRUE(Value("Account-Delivery").IsEmpty());
    EXPECT_EQ(Value("Channel-Delivery"), "SMTP carla@far.example");
}

TEST_F(Postmaster, KeepsOldDeliveriesWhereNoAddressIsValid) {
    EXPECT_TRUE(Run("sixsix\n\nnobody@mail.example.com\n"));
    EXPECT_TRUE(screen_.EndsWith("No valid addresses specified -- old postmaster deliveries retained.\n\n"));
    EXPECT_EQ(Value("Account-Delivery"), "Root");
}

TEST_F(Postmaster, RemindsOfWhatCouldNotBeStored) {
    ASSERT_TRUE(Run("sixsix\n\n\n"));
    database_.Refuse("value IN ('better password', '10.0.0.0/8', 'SMTP carla@far.example')");
    EXPECT_TRUE(Run("yes\nbetter password\n10.0.0.0/8\ncarla@far.example\n"));
    EXPECT_TRUE(Shows("WARNING:  The new password of the Postmaster account could not be stored."))
        << screen_;
    EXPECT_TRUE(Shows("WARNING:  The new Access-Domains of the Postmaster account")) << screen_;
    EXPECT_TRUE(Shows("The old\ndelivery information has been retained.")) << screen_;
    EXPECT_FALSE(gstrl_Reminders.IsEmpty());
    EXPECT_EQ(Value("Password"), "sixsix");
}

TEST_F(Postmaster, IsNotTakenForMissingWhereAccountsCannotBeRead) {
    database_.Folder().Write("config/MTA-Accounts", "damaged");
    EXPECT_FALSE(Run("sixsix\n\n\n"));
    EXPECT_TRUE(screen_.StartsWith("Checking for Postmaster account.... \nERROR:  Couldn't access"))
        << screen_;
    EXPECT_EQ(MapFileRead(database_.Path()), "damaged");
}

TEST_F(Postmaster, StopsAfterASignalDuringTheChangeOfDeliveries) {
    gf_Killed = 1;
    EXPECT_FALSE(Run("sixsix\n\n\n"));
    EXPECT_TRUE(screen_.EndsWith("Postmaster account setup completed.\n\n")) << screen_;
    EXPECT_EQ(Value("Account-Delivery"), "Root");
}

}  // namespace
