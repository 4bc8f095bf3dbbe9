#include "install/mail_system/database_update.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/database/sdbfile.h"
#include "support/database/sqlite.h"
#include "support/system/descriptor.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

TEST(ReadPreserveMap, SplitsAtTheFirstSlash) {
    const SNamedStringList map =
        ReadPreserveMap({"WWW-Server/Config/Socket", "", "no slash", "Dispatch/Config/EmailConfig",
                         "WWW-Server/Config/WWWAccess/", "Empty/"});
    EXPECT_EQ(map.Keys(), SStringList({"WWW-Server", "Dispatch", "Empty"}));
    EXPECT_EQ(map.Get("WWW-Server"), SStringList({"/Config/Socket", "/Config/WWWAccess/"}));
    EXPECT_EQ(map.Get("Dispatch"), SStringList("/Config/EmailConfig"));
    EXPECT_EQ(map.Get("Empty"), SStringList("/"));
    EXPECT_TRUE(map.Get("Mailer").IsEmpty());
}

class UpdateDatabaseTest : public testing::Test {
  protected:
    UpdateDatabaseTest() {
        PutEnv("TernHarbor", folder_ / "");
        MakeDir(folder_ / "config", 0700);
        Put("New", "/Config", "Socket", "80");
        Put("Old", "/Config", "Socket", {"8080", "second"});
    }
    static void Put(const SString& database, const SString& table, const SString& key,
                    const SStringList& values) {
        Sdbfile file(database, 0);
        ASSERT_TRUE(file.Open(table, 1) && file.Set(key, values));
    }
    static bool Update(const SString& new_database, const SString& old_database,
                       const SStringList& addresses) {
        Sdbfile in_use(old_database, 0);
        return in_use.Hold() && UpdateDatabase(new_database, &in_use, addresses);
    }
    static SStringList Value(const SString& table, const SString& key) {
        Sdbfile file("New", 0);
        EXPECT_NE(file.Open(table, 0), 0) << table;
        return file.Get(key);
    }
    TemporaryFolder folder_;
};

TEST_F(UpdateDatabaseTest, ReplacesAShippedValueByTheSites) {
    EXPECT_TRUE(Update("New", "Old", "/Config/Socket"));
    EXPECT_EQ(Value("/Config", "Socket"), SStringList({"8080", "second"}));
}

TEST_F(UpdateDatabaseTest, DropsOneTrailingSlash) {
    EXPECT_TRUE(Update("New", "Old", "/Config/Socket/"));
    EXPECT_EQ(Value("/Config", "Socket"), SStringList({"8080", "second"}));
}

TEST_F(UpdateDatabaseTest, LeavesWhatItIsNotToldOf) {
    EXPECT_TRUE(Update("New", "Old", {}));
    EXPECT_EQ(Value("/Config", "Socket"), SStringList("80"));
}

TEST_F(UpdateDatabaseTest, KeepsTheShippedValueWhereTheOldTableIsMissing) {
    Put("New", "/Config/Deeper", "Key", "shipped");
    EXPECT_TRUE(Update("New", "Old", {"/Config/Deeper/Key", "/", "/Socket"}));
    EXPECT_EQ(Value("/Config/Deeper", "Key"), SStringList("shipped"));
}

TEST_F(UpdateDatabaseTest, StoresAnEmptyListWhereTheOldTableLacksTheKey) {
    Put("New", "/Config", "WWWAccess", "none");
    EXPECT_TRUE(Update("New", "Old", "/Config/WWWAccess"));
    EXPECT_TRUE(Value("/Config", "WWWAccess").IsEmpty());
}

TEST_F(UpdateDatabaseTest, MakesATableThatTheNewOneLacks) {
    Put("Old", "/Site", "Key", "kept");
    EXPECT_TRUE(Update("New", "Old", "/Site/Key"));
    EXPECT_EQ(Value("/Site", "Key"), SStringList("kept"));
}

TEST_F(UpdateDatabaseTest, HasNothingToCarryOverWithoutAnOldDatabase) {
    EXPECT_TRUE(Update("New", "Missing", "/Config/Socket"));
    EXPECT_EQ(Value("/Config", "Socket"), SStringList("80"));
    EXPECT_FALSE(EntryExists(folder_ / "config/Missing"));
}

// Another run may have put it into service since it was listed: one made anew would hold the site's settings
// only.
TEST_F(UpdateDatabaseTest, MakesNoNewVersionWhereThereIsNone) {
    EXPECT_FALSE(Update("Missing", "Old", "/Config/Socket"));
    EXPECT_FALSE(EntryExists(folder_ / "config/Missing"));
}

TEST_F(UpdateDatabaseTest, PutsNoLinkIntoService) {
    ASSERT_EQ(symlink("Old", (folder_ / "config/Self").CString()), 0);
    ASSERT_EQ(symlink("nowhere", (folder_ / "config/Dangling").CString()), 0);
    ASSERT_EQ(mkfifo((folder_ / "config/Fifo").CString(), 0600), 0);
    for (const SString name : {"Self", "Dangling", "Fifo"}) {
        EXPECT_FALSE(Update(name, "Old", SStringList())) << name;
    }
}

TEST_F(UpdateDatabaseTest, FailsRatherThanResetASettingThatCannotBeRead) {
    folder_.Write("config/Damaged", "this is no database, but it holds the site's settings\n");
    EXPECT_FALSE(Update("New", "Damaged", "/Config/Socket"));
    EXPECT_EQ(Value("/Config", "Socket"), SStringList("80"));
}

TEST_F(UpdateDatabaseTest, TriesEveryAddressAfterAFailure) {
    folder_.Write("config/Broken", "no database\n");
    EXPECT_FALSE(Update("Broken", "Old", {"/Config/Socket", "/Config/Socket"}));
    EXPECT_EQ(MapFileRead(folder_ / "config/Broken"), "no database\n");
}

TEST_F(UpdateDatabaseTest, HasNothingToCopyBetweenTwoNamesOfOneFile) {
    ASSERT_TRUE(AddName(folder_ / "config/Old", folder_ / "config/Same"));
    EXPECT_TRUE(Update("Same", "Old", "/Config/Socket"));
}

TEST_F(UpdateDatabaseTest, ReplacesWhatIsNoDatabaseIfNothingIsToBeKept) {
    folder_.Write("config/Damaged", "no database\n");
    EXPECT_TRUE(Update("New", "Damaged", {}));
}

TEST_F(UpdateDatabaseTest, FailsWhereAnotherProcessWrites) {
    const auto other = sqlite::Connection::Open(folder_ / "config/Old", sqlite::Mode::Shared);
    ASSERT_TRUE(other->Execute("BEGIN IMMEDIATE"));
    EXPECT_FALSE(Update("New", "Old", {}));
}

TEST_F(UpdateDatabaseTest, LeavesNothingBesideTheFiles) {
    EXPECT_TRUE(Update("New", "Old", "/Config/Socket"));
    EXPECT_EQ(ReadDir(folder_ / "config").Count(), 2U);
}

// The exchange is about names only, so plain text will do as databases.
class ExchangeDatabaseTest : public testing::Test {
  protected:
    ExchangeDatabaseTest() {
        folder_.Write("M", "old");
        folder_.Write("M.install", "new");
    }
    SString Text(const SString& name) const { return MapFileRead(folder_ / name); }
    void ExpectDone() const {
        EXPECT_EQ(ExchangeDatabase(folder_ / "M", Sdbfile()), Exchange::Done);
        EXPECT_EQ(Text("M"), "new");
        EXPECT_EQ(Text("M.backup"), "old");
        EXPECT_EQ(ReadDir(folder_ / "").Count(), 2U);
    }
    TemporaryFolder folder_;
};

TEST_F(ExchangeDatabaseTest, KeepsThePreviousVersion) {
    ExpectDone();
}

TEST_F(ExchangeDatabaseTest, ReplacesAnOlderBackup) {
    folder_.Write("M.backup", "older");
    ExpectDone();
}

TEST_F(ExchangeDatabaseTest, FinishesAfterARunKilledBeforeTheBackup) {
    folder_.Write("M.backup", "older");
    ASSERT_TRUE(AddName(folder_ / "M", folder_ / "M.backup.new"));
    ExpectDone();
}

TEST_F(ExchangeDatabaseTest, FinishesAfterARunKilledAfterTheBackup) {
    ASSERT_TRUE(AddName(folder_ / "M", folder_ / "M.backup"));
    ExpectDone();
}

// A rename between two names of one file does nothing, which would leave a new version to install forever.
TEST_F(ExchangeDatabaseTest, FinishesWhereTheNewVersionIsTheOldOne) {
    RemoveFile(folder_ / "M.install");
    ASSERT_TRUE(AddName(folder_ / "M", folder_ / "M.install"));
    EXPECT_EQ(ExchangeDatabase(folder_ / "M", Sdbfile()), Exchange::Done);
    EXPECT_EQ(Text("M"), "old");
    EXPECT_EQ(Text("M.backup"), "old");
    EXPECT_FALSE(EntryExists(folder_ / "M.install"));
}

TEST_F(ExchangeDatabaseTest, InstallsNothingWithoutABackup) {
    MakeDir(folder_ / "M.backup", 0700);
    EXPECT_EQ(ExchangeDatabase(folder_ / "M", Sdbfile()), Exchange::NotBackedUp);
    EXPECT_EQ(Text("M"), "old");
    EXPECT_EQ(Text("M.install"), "new");
    EXPECT_FALSE(EntryExists(folder_ / "M.backup.new"));
}

TEST_F(ExchangeDatabaseTest, InstallsNothingWithoutAnOldDatabase) {
    RemoveFile(folder_ / "M");
    EXPECT_EQ(ExchangeDatabase(folder_ / "M", Sdbfile()), Exchange::NotBackedUp);
    EXPECT_EQ(Text("M.install"), "new");
    EXPECT_FALSE(EntryExists(folder_ / "M"));
}

TEST_F(ExchangeDatabaseTest, RollsBackToTheOldDatabase) {
    RemoveFile(folder_ / "M.install");
    MakeDir(folder_ / "M.install", 0700);
    EXPECT_EQ(ExchangeDatabase(folder_ / "M", Sdbfile()), Exchange::RolledBack);
    EXPECT_EQ(Text("M"), "old");
    EXPECT_FALSE(EntryExists(folder_ / "M.backup"));
}

}  // namespace
