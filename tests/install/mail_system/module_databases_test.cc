#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "install/mail_system/settings_digest.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/database/sdbfile.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "tests/data_directory.h"
#include "tests/dialogue.h"
#include "tests/install/record/recording.h"

namespace {

class UpdateConfigurationTest : public testing::Test {
  protected:
    UpdateConfigurationTest() {
        gstr_TernHarbor = data_.Path();
        gstrl_Reminders.Reset();
    }
    static void Store(const SString& database, const SString& value) {
        Sdbfile handle(database, 0);
        ASSERT_NE(handle.Open("/Config", 1), 0);
        ASSERT_NE(handle.Set("Socket", value), 0);
    }
    static SString Stored(const SString& database) {
        Sdbfile handle(database, 0);
        handle.Open("/Config", 0);
        return handle.Get("Socket").Get(0);
    }
    void Preserve(const SString& lines) const { data_.WriteConfig("__PRESERVE__", lines); }
    static SString Run() {
        const Dialogue dialogue;
        EXPECT_TRUE(UpdateConfiguration());
        return dialogue.Screen();
    }

    DataDirectory data_;
};

TEST_F(UpdateConfigurationTest, SaysNothingWithoutANewVersionOrAPreserveFile) {
    Preserve("WWW-Server/Config/Socket\n");
    EXPECT_EQ(Run(), "");
    RemoveFile(data_.Config("__PRESERVE__"));
    Store("WWW-Server.install", "80");
    EXPECT_EQ(Run(), "");
    EXPECT_TRUE(FileExists(data_.Config("WWW-Server.install")));
}

TEST_F(UpdateConfigurationTest, TakesOnlyAReasonablePreserveFile) {
    Store("WWW-Server.install", "80");
    Store("WWW-Server", "8080");
    const SString preserve = data_.Config("__PRESERVE__");
    ASSERT_EQ(mkfifo(preserve.CString(), 0640), 0);
    EXPECT_EQ(Run(), "");
    RemoveFile(preserve);
    ASSERT_EQ(symlink("/dev/zero", preserve.CString()), 0);
    EXPECT_EQ(Run(), "");
    RemoveFile(preserve);
    const SString line = "WWW-Server/Config/Socket\n";
    Preserve(line + SString('\n', (16 << 20) + 1 - static_cast<long>(line.Length())));
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(Stored("WWW-Server.install"), "80");
    ASSERT_EQ(truncate(preserve.CString(), 16 << 20), 0);
    EXPECT_EQ(Run(), "Updating module configurations....\n     WWW-Server\ndone\n");
    EXPECT_EQ(Stored("WWW-Server"), "8080");
}

TEST_F(UpdateConfigurationTest, PutsNewVersionsIntoServiceInTheirOrder) {
    Preserve("WWW-Server/Config/Socket\n");
    Store("WWW-Server.install", "80");
    Store("WWW-Server", "8080");
    Store("Dispatch.install", "1");
    Store("Dispatch", "2");
    EXPECT_EQ(Run(), "Updating module configurations....\n     Dispatch\n     WWW-Server\ndone\n");
    EXPECT_EQ(Stored("WWW-Server"), "8080");  // the site's
    EXPECT_EQ(Stored("Dispatch"), "1");       // the release's
    EXPECT_EQ(Stored("Dispatch.backup"), "2");
    EXPECT_TRUE(gstrl_Reminders.IsEmpty());
}

TEST_F(UpdateConfigurationTest, LeavesTheAccountsAlone) {
    Preserve("MTA-Accounts/Config/Socket\n");
    Store("MTA-Accounts.install", "80");
    EXPECT_EQ(Run(), "");
    EXPECT_FALSE(FileExists(data_.Config("MTA-Accounts")));
}

TEST_F(UpdateConfigurationTest, IsRecorded) {
    Preserve("WWW-Server/Config/Socket\n");
    Store("WWW-Server.install", "80");
    Store("WWW-Server.backup", "1");
    Store("WWW-Server", "8080");
    const SString shipped = MapFileRead(data_.Config("WWW-Server.install"));
    const SString older = MapFileRead(data_.Config("WWW-Server.backup"));
    const Recording recording;
    Run();
    const auto changes = recording.Changes();
    ASSERT_EQ(changes.size(), 2U);
    const auto& prepared = std::get<change::DatabasePrepared>(changes[0]);
    EXPECT_EQ(recording.Kept(prepared.new_version.kept), shipped);
    EXPECT_EQ(recording.Kept(prepared.older_backup.kept), older);
    const auto& exchanged = std::get<change::DatabaseExchanged>(changes[1]);
    EXPECT_EQ(RealPath(exchanged.file), RealPath(data_.Config("WWW-Server")));
    EXPECT_EQ(exchanged.before, SettingsDigestOf(data_.Config("WWW-Server.backup")));
    EXPECT_EQ(exchanged.after, SettingsDigestOf(data_.Config("WWW-Server")));
    EXPECT_EQ(exchanged.after, exchanged.before);  // the preserved setting is the only one
}

TEST_F(UpdateConfigurationTest, IsRecordedWhereTheNewVersionIsASecondName) {
    Preserve("WWW-Server/Config/Socket\n");
    Store("WWW-Server", "8080");
    ASSERT_TRUE(AddName(data_.Config("WWW-Server"), data_.Config("WWW-Server.install")));
    const Recording recording;
    Run();
    const auto changes = recording.Changes();
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(std::get<change::DatabasePrepared>(changes[0]).older_backup.kept, "");
    EXPECT_EQ(std::get<change::DatabaseExchanged>(changes[1]).after,
              SettingsDigestOf(data_.Config("WWW-Server")));
}

/// What the mail owner cannot read is root's, who kept it there.
TEST_F(UpdateConfigurationTest, KeepsARootsBackup) {
    constexpr uid_t kMail = 2008;
    Preserve("WWW-Server/Config/Socket\n");
    Store("WWW-Server.install", "80");
    Store("WWW-Server", "8080");
    for (const char* name : {"WWW-Server", "WWW-Server.install", "__PRESERVE__"}) {
        ASSERT_EQ(chown(data_.Config(name).CString(), kMail, kMail), 0);
    }
    data_.GiveTo(kMail, kMail);
    data_.WriteConfig("WWW-Server.backup", "root's", 0600);
    const Recording recording;
    {
        const AsUser mail_owner({kMail, kMail, {kMail}});
        ASSERT_TRUE(mail_owner.IsTaken());
        Run();
    }
    const auto backup = std::get<change::DatabasePrepared>(recording.Changes().at(0)).older_backup;
    EXPECT_TRUE(backup.was_there);
    EXPECT_EQ(recording.Kept(backup.kept), "root's");
    EXPECT_EQ(backup.access.owner, 0U);
}

TEST_F(UpdateConfigurationTest, TellsABackupThatIsNotKeptFromNone) {
    Preserve("WWW-Server/Config/Socket\n");
    Store("WWW-Server.install", "80");
    Store("WWW-Server", "8080");
    ASSERT_EQ(symlink("elsewhere", data_.Config("WWW-Server.backup").CString()), 0);
    const Recording recording;
    Run();
    const auto backup = std::get<change::DatabasePrepared>(recording.Changes().at(0)).older_backup;
    EXPECT_TRUE(backup.was_there);
    EXPECT_EQ(backup.kept, "");
}

}  // namespace
