#include <gtest/gtest.h>

#include "install/settings.h"
#include "install/steps.h"
#include "support/database/sdbfile.h"
#include "tests/data_directory.h"
#include "tests/dialogue.h"

namespace {

class ConfigureFeaturesTest : public testing::Test {
  protected:
    ConfigureFeaturesTest() { gstr_HostName = "mail.example.com"; }
    ~ConfigureFeaturesTest() override { gn_WWWPort = 80; }
    static void Store(const SString& database, const SString& key, const SStringList& values) {
        Sdbfile handle(database, 0);
        ASSERT_NE(handle.Open("/Config", 1), 0);
        ASSERT_NE(handle.Set(key, values), 0);
    }
    static SString Stored(const SString& database, const SString& key) {
        Sdbfile handle(database, 0);
        handle.Open("/Config", 0);
        return handle.Get(key).Join(",");
    }
    static bool Run(const SString& answers) {
        const Dialogue dialogue(answers);
        return ConfigureFeatures();
    }

    DataDirectory data_;
};

TEST_F(ConfigureFeaturesTest, ChangesNothingUnasked) {
    Store("WWW-Server", "Socket", "8080");
    for (const char* answer : {"", "no\n", "maybe\n"}) EXPECT_TRUE(Run(answer)) << answer;
    EXPECT_FALSE(Run("quit\n"));
    EXPECT_EQ(Stored("WWW-Server", "Socket"), "8080");
    EXPECT_EQ(Stored("Dispatch", "EmailConfig"), "");
    EXPECT_EQ(gn_WWWPort, 8080);
}

TEST_F(ConfigureFeaturesTest, StoresEachAnswer) {
    Store("WWW-Server", "Socket", "80");
    Store("WWW-Server", "WWWAccess", {"example.com", "10.0.0.0/8"});
    EXPECT_TRUE(Run("yes\n28\nyes\nyes\nno\n"));
    EXPECT_EQ(Stored("WWW-Server", "Socket"), "28");
    EXPECT_EQ(Stored("WWW-Server", "WWWAccess"), "");
    EXPECT_EQ(Stored("Dispatch", "EmailConfig"), "no");
    EXPECT_EQ(gn_WWWPort, 28);
}

TEST_F(ConfigureFeaturesTest, AsksForAPortUntilItIsOne) {
    Store("WWW-Server", "Socket", "80");
    EXPECT_TRUE(Run("yes\n0\n65536\n8000\nno\n30\nyes\nyes\n"));
    EXPECT_EQ(Stored("WWW-Server", "Socket"), "30");
}

TEST_F(ConfigureFeaturesTest, GoesOnAskingWhileThereIsInput) {
    Store("WWW-Server", "Socket", "no port");
    EXPECT_TRUE(Run("yes\n0\n8080\nyes\nyes\n"));
    EXPECT_EQ(Stored("WWW-Server", "Socket"), "8080");
    EXPECT_TRUE(Run("yes\n0\n"));  // the default is a port
    Store("WWW-Server", "Socket", "no port");
    EXPECT_FALSE(Run("yes\n0\n"));
}

TEST_F(ConfigureFeaturesTest, StopsWhereInputEndsAndTheDefaultIsNoPort) {
    Store("WWW-Server", "Socket", "none");
    EXPECT_FALSE(Run("yes\n"));
    Store("WWW-Server", "Socket", "81");
    EXPECT_TRUE(Run("yes\n"));  // a default that is one counts
}

}  // namespace
