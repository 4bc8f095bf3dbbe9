#include "install/mail_system/recorded_databases.h"

#include <gtest/gtest.h>

#include "tests/data_directory.h"
#include "tests/install/record/recording.h"

namespace {

TEST(RecordTable, TellsADatabaseFromATable) {
    const DataDirectory data;
    const Recording recording;
    RecordTable("Module", "/Config");
    Sdbfile file("Module", 0);
    ASSERT_NE(file.Open("/Config", 1), 0);
    RecordTable("Module", "/Config");
    RecordTable("Module", "/Other");
    const auto changes = recording.Changes();
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(std::get<change::DatabaseMade>(changes[0]).table, "");
    EXPECT_EQ(std::get<change::DatabaseMade>(changes[1]).table, "/Other");
}

TEST(RecordSetting, HasTheValuesBeforeAndAfter) {
    const DataDirectory data;
    Sdbfile file("Module", 0);
    ASSERT_TRUE(file.Open("/Config", 1) && file.Set("Socket", {"80", "81"}));
    const Recording recording;
    RecordSetting("Module", "/Config", file, "Socket", "8080");
    const auto setting = recording.Only<change::SettingChanged>();
    EXPECT_EQ(RealPath(setting.database), RealPath(data.Config("Module")));
    EXPECT_EQ(setting.table, "/Config");
    EXPECT_EQ(setting.key, "Socket");
    EXPECT_EQ(setting.before, SStringList({"80", "81"}));
    EXPECT_EQ(setting.after, SStringList("8080"));
}

TEST(RecordPreparation, IsOfARegularFileOnly) {
    const DataDirectory data;
    const Recording recording;
    RecordPreparation("Module");
    data.WriteConfig("elsewhere", "x");
    ASSERT_EQ(symlink("elsewhere", data.Config("Module.install").CString()), 0);
    RecordPreparation("Module");
    EXPECT_TRUE(recording.Changes().empty());
}

}  // namespace
