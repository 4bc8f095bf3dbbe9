#include "install/mail_system/settings_digest.h"

#include <gtest/gtest.h>

#include "support/database/sdbfile.h"
#include "support/system/file.h"
#include "tests/data_directory.h"

namespace {

class SettingsDigestTest : public testing::Test {
  protected:
    static void Put(const SString& table, const SString& key, const SStringList& values) {
        Sdbfile file("Module", 0);
        ASSERT_TRUE(file.Open(table, 1) && file.Set(key, values));
    }
    SString Digest() const { return SettingsDigestOf(data_.Config("Module")); }

    DataDirectory data_;
};

TEST_F(SettingsDigestTest, IsTheSameOfTheSameSettings) {
    Put("/Config", "Socket", "80");
    const SString digest = Digest();
    EXPECT_EQ(digest.Length(), 64U);
    const SString bytes = MapFileRead(data_.Config("Module"));
    EXPECT_EQ(SettingsDigest(bytes), digest);
    Put("/Config", "Socket", {"8080", "x"});
    EXPECT_NE(Digest(), digest);
    Put("/Config", "Socket", "80");
    EXPECT_EQ(Digest(), digest);
    EXPECT_NE(MapFileRead(data_.Config("Module")), bytes);
}

TEST_F(SettingsDigestTest, TellsTablesKeysAndValuesApart) {
    SStringList digests;
    const auto add = [&] {
        const SString digest = Digest();
        EXPECT_FALSE(digests.Contains(digest));
        digests.Push(digest);
    };
    Put("/A", "K", "vw");
    add();
    Put("/A", "K", {"v", "w"});
    add();
    Put("/A", "K", {"w", "v"});
    add();
    Put("/A", "K", "");
    add();
    Put("/A", "K", {});
    add();
    Put("/A/K", "", {});
    add();
}

TEST_F(SettingsDigestTest, IsEmptyOfWhatIsNoDatabase) {
    EXPECT_EQ(Digest(), "");
    data_.WriteConfig("Module", "no database");
    EXPECT_EQ(Digest(), "");
    EXPECT_EQ(SettingsDigest(""), "");
}

}  // namespace
