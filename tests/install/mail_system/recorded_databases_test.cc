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

/// What is set next cannot be taken back: the record must not look whole.
TEST(RecordSetting, EndsTheRecordWhereTheOldValueCannotBeRead) {
    const DataDirectory data;
    Sdbfile file("Module", 0);
    ASSERT_TRUE(file.Open("/Config", 1) && file.Set("Socket", "80"));
    const Recording recording;
    RecordTable("Other", "/Config");
    data.WriteConfig("Module", SString('x', 4096));
    RecordSetting("Module", "/Config", file, "Socket", "8080");
    EXPECT_FALSE(IsRecording());
    RecordTable("Another", "/Config");
    EndRecord(0);
    EXPECT_EQ(BaseName(recording.Only<change::DatabaseMade>().file, ""), "Other");
}

TEST(RecordTable, EndsTheRecordWhereItCannotBeToldWhetherThereIsOne) {
    const DataDirectory data;
    const Recording recording;
    data.WriteConfig("Module", SString('x', 4096));
    RecordTable("Module", "/Config");
    EXPECT_FALSE(IsRecording());
}

TEST(RecordPreparation, EndsTheRecordWhereACopyCannotBeKept) {
    const DataDirectory data;
    const Recording recording;
    data.WriteConfig("Module.install", "x");
    RecordPreparation("Module");
    EXPECT_TRUE(IsRecording());
    data.WriteConfig("Module.install-journal", "x");  // nothing works it off
    RecordPreparation("Module");
    EXPECT_FALSE(IsRecording());
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
