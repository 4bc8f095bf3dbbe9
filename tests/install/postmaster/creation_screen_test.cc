#include "install/postmaster/creation_screen.h"

#include "install/settings.h"
#include "tests/dialogue.h"
#include "tests/install/account_database.h"

namespace {

class CreationScreen : public testing::Test {
  protected:
    CreationScreen() {
        gstr_HostName = "mail.example.com";
        gstr_DomainName = "example.com";
        gstr_TernHarbor = "/data/";
    }
    bool Create() {
        const Dialogue dialogue;
        const bool goes_on = CreatePostmasterWithRoot(&accounts_);
        screen_ = dialogue.Screen();
        return goes_on;
    }

    AccountDatabase database_;
    SAccountDBMod accounts_;
    SString screen_;
};

TEST_F(CreationScreen, TellsOfBothAccounts) {
    EXPECT_TRUE(Create());
    EXPECT_EQ(screen_,
              "Creating Postmaster account.... hold on a second....\n"
              "Creating a mail account for root.... done\n"
              "Adding root to Postmaster delivery list.... done\n");
}

TEST_F(CreationScreen, IsOneLineWhereRootHasAnAccount) {
    database_.Add("Charlie_Root", "root@mail.example.com");
    EXPECT_TRUE(Create());
    EXPECT_EQ(screen_, "Creating Postmaster account.... done\n");
}

TEST_F(CreationScreen, TellsHowFarItCame) {
    const struct {
        const char* refused;
        bool root_exists;
        bool goes_on;
        SString beginning;
    } cases[] = {
        {"value = 'Mail Administrator'", false, false,
         "Creating Postmaster account.... \nERROR:  Couldn't create the Postmaster account!"},
        {"value = 'System Administrator'", false, false,
         "Creating Postmaster account.... hold on a second....\n"
         "Creating a mail account for root.... failed!\nERROR:  Couldn't create a mail account for root."},
        {"name = 'Account-Delivery'", false, true,
         "Creating Postmaster account.... hold on a second....\n"
         "Creating a mail account for root.... done\n"
         "Adding root to Postmaster delivery list.... failed!\n\nERROR:  Couldn't set up the Postmaster"},
        {"name = 'Account-Delivery'", true, true,
         "Creating Postmaster account.... failed\n\nERROR:  Couldn't set up the Postmaster account"},
    };
    for (const auto& c : cases) {
        AccountDatabase database;
        if (c.root_exists) database.Add("Charlie_Root", "root@mail.example.com");
        database.Refuse(c.refused);
        EXPECT_EQ(Create(), c.goes_on) << c.refused;
        EXPECT_TRUE(screen_.StartsWith(c.beginning.Bytes())) << screen_;
        EXPECT_EQ(screen_.EndsWith("Installation aborted.\n"), !c.goes_on) << screen_;
        EXPECT_EQ(accounts_.Find("Postmaster"), c.goes_on ? Lookup::Found : Lookup::Missing);
    }
}

}  // namespace
