// The way back of a module's new database, from wherever the run was killed.
#include "tests/undo/mail_system/module_database.h"
#include "support/process/child_process.h"
#include "tests/undo/mail_system/access_lists.h"
#include "undo/entries.h"
#include "undo/later_runs.h"
#include "undo/mail_system/access_list.h"

namespace {

bool HasOpenForWriting(pid_t process, const SString& path) {
    const SString folder = "/proc/" + SString(process) + "/";
    for (const SString& descriptor : ReadDir(folder + "fd")) {
        const SString info = MapFileRead(folder + "fdinfo/" + BaseName(descriptor, ""));
        if (LinkText(descriptor) == path && info.Matches("flags:\\s+[0-7]*2\\n")) return true;
    }
    return false;
}

/// A process that holds the database, and stores a setting once this one has it open for writing.
pid_t StartWriter(const SString& database) {
    const SString path = RealPath(database);
    const pid_t reader = getpid();
    int ready[2];
    EXPECT_EQ(pipe(ready), 0);
    const pid_t writer = StartChild([&] {
        const auto connection = sqlite::Connection::Open(path, sqlite::Mode::Shared);
        sqlite::Transaction change(*connection);
        close(ready[0]);
        close(ready[1]);
        while (!HasOpenForWriting(reader, path)) usleep(1000);
        connection->Execute("UPDATE settings SET value = 'somebody''s' WHERE key = 'Socket'");
        change.Commit();
    });
    char byte = 0;
    close(ready[1]);
    EXPECT_EQ(read(ready[0], &byte, 1), 0);  // its end
    close(ready[0]);
    return writer;
}

TEST_F(ModuleDatabase, IsAsBeforeFromWhereverTheRunWasKilled) {
    for (const bool has_older_backup : {false, true}) {
        for (const Stage stage : kStages) {
            MakeSite(has_older_backup);
            const Listing before = Site();
            const ino_t in_use = [&] {
                struct stat status {};
                stat(data_.Config("Web").CString(), &status);
                return status.st_ino;
            }();
            Run(stage);
            EXPECT_EQ(OfExchange() == Standing::AsLeft, stage == Exchanged) << stage;
            EXPECT_EQ(OfPreparation(), stage == Prepared ? Standing::AsBefore : Standing::AsLeft) << stage;
            EXPECT_EQ(TakeAllBack(), SStringList()) << stage;
            EXPECT_EQ(Site(), before) << stage;
            struct stat status {};
            stat(data_.Config("Web").CString(), &status);
            EXPECT_EQ(status.st_ino, in_use) << stage;
            EXPECT_TRUE(stage < Linked || OfExchange() == Standing::AsBefore) << stage;
            EXPECT_EQ(OfPreparation(), Standing::AsBefore) << stage;
            EXPECT_EQ(TakeAllBack(), SStringList()) << stage;
            EXPECT_EQ(Site(), before) << stage;
            for (const auto& [name, rest] : before) RemoveFile(data_.Config(name));
            exchanged_ = {};
        }
    }
}

/// The run's later changes of its settings are taken back before.
TEST_F(ModuleDatabase, IsPlannedToGoBackWhileTheRunsOwnSettingsStand) {
    MakeSite(false);
    const Listing before = Site();
    Run(Exchanged);
    const change::SettingChanged setting = {"Web", "/Config", "Socket", "8080", "26"};
    changes_.push_back(setting);
    Put("Web", "Socket", "26");
    const std::vector<Entry> entries = {{4, "", Change(setting)}};
    run_.entries = &entries;
    EXPECT_EQ(OfExchange(), Standing::AsLeft);
    EXPECT_EQ(TakeExchangeBack().Count(), 1U);  // not before the setting
    EXPECT_EQ(Socket("Web"), "26");
    EXPECT_TRUE(TakeBack(setting, run_).left.IsEmpty());
    EXPECT_EQ(TakeAllBack(), SStringList());
    EXPECT_EQ(Site(), before);
}

/// Who has made it anew since then meant it.
TEST_F(ModuleDatabase, StaysWhereTheRunsOwnSettingWasTakenBackBefore) {
    MakeSite(false);
    Run(Exchanged);
    changes_.push_back(change::SettingChanged{"Web", "/Config", "Socket", "8080", "26"});
    Put("Web", "Socket", "26");
    const std::vector<Entry> entries;
    run_.entries = &entries;
    EXPECT_EQ(OfExchange(), Standing::Changed);
}

TEST_F(ModuleDatabase, StaysWhileALaterRunHasTheSettingChangedAgain) {
    MakeSite(false);
    Run(Exchanged);
    const change::SettingChanged setting = {"Web", "/Config", "Socket", "8080", "26"};
    Put("Web", "Socket", "26");
    const std::vector<Entry> entries = {{4, "", Change(setting)}};
    run_.entries = &entries;
    const SString later = "20261123T170405Z-1";
    beside_.Write(later, FormatLine() + LineOf({"2026-11-23T17:04:06Z", setting}), 0600);
    const Records records(beside_ / ".");
    const LaterRuns runs(records, "20261122T170405Z-1");
    run_.later = &runs;
    EXPECT_EQ(OfExchange(), Standing::Changed);
}

TEST_F(ModuleDatabase, StaysWhereSomebodyChangedASetting) {
    MakeSite(true);
    Run(Exchanged);
    Put("Web", "Mine", "yes");
    const Listing changed = Site();
    EXPECT_EQ(OfExchange(), Standing::Changed);
    const SString file = data_.Config("Web");
    EXPECT_EQ(
        LookAt(exchanged_, run_).text,
        file + " was changed since Install replaced it; the version from before is " + file + ".backup");
    EXPECT_EQ(OfPreparation(), Standing::AsBefore);  // told once
    EXPECT_EQ(TakeAllBack().Count(), 1U);
    EXPECT_EQ(Site(), changed);
}

TEST_F(ModuleDatabase, StaysWhereItsBackupIsNoLongerTheRuns) {
    MakeSite(false);
    Run(Exchanged);
    Put("Web.backup", "Mine", "yes");
    const Listing changed = Site();
    EXPECT_EQ(OfExchange(), Standing::Changed);
    EXPECT_EQ(TakeAllBack().Count(), 1U);
    EXPECT_EQ(Site(), changed);
}

TEST_F(ModuleDatabase, ThatWasDeliveredSinceIsLeft) {
    MakeSite(false);
    Run(Exchanged);
    Put("Web.install", "Socket", "90");
    EXPECT_EQ(OfExchange(), Standing::AsLeft);
    EXPECT_EQ(TakeAllBack(), data_.Config("Web.install") +
                                 " is another one than Install put into service; the one from before is " +
                                 run_.kept + "Web.install");
    EXPECT_EQ(Socket("Web"), "8080");
    EXPECT_EQ(Socket("Web.install"), "90");
    EXPECT_EQ(OfPreparation(), Standing::Changed);
}

/// Their digests are the same: the missing new version tells that there was an exchange.
TEST_F(ModuleDatabase, WithTheSameSettingsGoesBackOnce) {
    for (const bool is_older_the_same : {false, true}) {
        Put("Web", "Socket", "8080");
        Put("Web.install", "Socket", "80");
        if (is_older_the_same) Put("Web.backup", "Socket", {"8080"});
        const Listing before = Site();
        Run(Exchanged);
        ASSERT_EQ(exchanged_.before, exchanged_.after);
        EXPECT_EQ(OfExchange(), Standing::AsLeft);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(TakeAllBack(), SStringList());
            EXPECT_EQ(Site(), before);
        }
    }
}

TEST_F(ModuleDatabase, OfOneFileWithTwoNamesIsThatAgain) {
    Put("Web", "Socket", "8080");
    ASSERT_TRUE(AddName(data_.Config("Web"), data_.Config("Web.install")));
    const Listing before = Site();
    Run(Exchanged);
    EXPECT_FALSE(EntryExists(data_.Config("Web.install")));
    EXPECT_EQ(TakeAllBack(), SStringList());
    EXPECT_EQ(Site(), before);
    struct stat in_use {};
    struct stat new_version {};
    stat(data_.Config("Web").CString(), &in_use);
    stat(data_.Config("Web.install").CString(), &new_version);
    EXPECT_TRUE(IsSameFile(in_use, new_version));
}

/// As after every release: nobody has changed a setting.
TEST_F(ModuleDatabase, OfTwoRunsGoesBackInTheirOrderOnly) {
    Put("Web", "Socket", "80");
    Put("Web.install", "Socket", "80");
    const Listing before = Site();
    Run(Exchanged);
    const change::DatabaseExchanged first = exchanged_;
    Put("Web.install", "Socket", "80");
    ASSERT_EQ(rename((beside_ / "Web.install").CString(), (beside_ / "first").CString()), 0);
    const Listing between = Site();
    Run(Exchanged);
    const Listing after = Site();
    EXPECT_EQ(TakeBack(first, run_).left,
              data_.Config("Web") + " was replaced by a later run: take that back first");
    EXPECT_EQ(Site(), after);
    EXPECT_EQ(TakeAllBack(), SStringList());
    EXPECT_EQ(Site(), between);
    EXPECT_EQ(LookAt(first, run_).standing, Standing::AsLeft);
    EXPECT_EQ(TakeBack(first, run_).left, SStringList());
    EXPECT_EQ(std::get<0>(Site()["Web"]), std::get<0>(before.at("Web")));
}

TEST_F(ModuleDatabase, WhoseNewVersionWouldBeLostStays) {
    MakeSite(false);
    Run(Exchanged);
    const Listing after = Site();
    RemoveFile(beside_ / "Web.install");
    EXPECT_EQ(OfExchange(), Standing::ByHand);
    EXPECT_EQ(TakeExchangeBack(), LookAt(exchanged_, run_).by_hand);
    EXPECT_EQ(Site(), after);
}

/// As where the file system has no hard links, or the file is another's.
TEST_F(ModuleDatabase, WhoseBackupIsACopyHasItsAccessAgain) {
    for (const bool is_killed_before_removal : {false, true}) {
        MakeSite(true);
        const SString web = data_.Config("Web");
        ASSERT_EQ(chown(web.CString(), 0, 8), 0);
        ASSERT_EQ(chmod(web.CString(), 0644), 0);
        ASSERT_TRUE(SetAccessList(Descriptor::Open(web, O_RDONLY), kListWithAnother));
        const Listing before = Site();
        Run(Exchanged);
        CopyBackup();
        const SString copy = MapFileRead(web + ".backup");
        EXPECT_EQ(TakeExchangeBack(), SStringList());
        if (is_killed_before_removal) data_.WriteConfig("Web.backup", copy);
        EXPECT_EQ(TakeAllBack(), SStringList());
        EXPECT_EQ(Site(), before);
        EXPECT_EQ(AccessOf(web)->access_list, kListWithAnother);
        for (const auto& [name, rest] : before) RemoveFile(data_.Config(name));
    }
}

TEST_F(ModuleDatabase, WithAKilledRunsJournalIsAsThatFoundIt) {
    MakeSite(false);
    const Listing before = Site();
    Run(Exchanged);
    LeaveHalfWritten(data_.Config("Web"));
    EXPECT_EQ(OfExchange(), Standing::AsLeft);
    EXPECT_EQ(TakeAllBack(), SStringList());
    EXPECT_EQ(Site(), before);
}

TEST_F(ModuleDatabase, ThatIsInUseIsLeftForLater) {
    MakeSite(false);
    Run(Exchanged);
    const auto other = sqlite::Connection::Open(data_.Config("Web"), sqlite::Mode::Shared);
    const sqlite::Transaction lock(*other);
    const TakenBack taken = TakeBack(exchanged_, run_);
    EXPECT_FALSE(taken.is_whole);
    EXPECT_EQ(taken.left, data_.Config("Web") + " is in use");
    EXPECT_EQ(Socket("Web.backup"), "8080");
}

/// Between the look at it and the lock: the lock is waited for then.
TEST_F(ModuleDatabase, ThatIsChangedMeanwhileStays) {
    MakeSite(false);
    Run(Exchanged);
    const pid_t other = StartWriter(data_.Config("Web"));
    EXPECT_EQ(TakeExchangeBack(), data_.Config("Web") +
                                      " was changed since Install replaced it; the version from before is " +
                                      data_.Config("Web.backup"));
    waitpid(other, nullptr, 0);
    EXPECT_EQ(Socket("Web"), "somebody's");
    EXPECT_EQ(Socket("Web.backup"), "8080");
}

TEST_F(ModuleDatabase, WhoseCopyIsLostIsNotMadeUp) {
    MakeSite(true);
    Run(Carried);
    RemoveFile(beside_ / "Web.install");
    EXPECT_EQ(TakeBack(prepared_, run_).left,
              "No copy was kept of " + data_.Config("Web.install") + ", as it was delivered");
    EXPECT_EQ(Socket("Web.install"), "8080");
}

/// The copy is read as root: what others could have put there counts for nothing.
TEST_F(ModuleDatabase, WhoseCopyIsALinkOrAnothersIsNotUsed) {
    MakeSite(false);
    Run(Carried);
    const SString kept = beside_ / "Web.install";
    ASSERT_EQ(chown(kept.CString(), kMail, kMail), 0);
    EXPECT_EQ(TakeBack(prepared_, run_).left.Count(), 1U);
    RemoveFile(kept);
    beside_.Write("other", "x");
    ASSERT_EQ(symlink("other", kept.CString()), 0);
    EXPECT_EQ(TakeBack(prepared_, run_).left.Count(), 1U);
    EXPECT_EQ(Socket("Web.install"), "8080");
}

/// What a killed Undo and a killed copying leave.
TEST_F(ModuleDatabase, LeavesNoUnfinishedFilesBehind) {
    MakeSite(true);
    const Listing before = Site();
    Run(Carried);
    data_.WriteConfig(".Web.install.undo", "half");
    data_.WriteConfig("Web.install-journal", "half");
    data_.WriteConfig("Web.backup.new", "half");
    EXPECT_EQ(TakeAllBack(), SStringList());
    EXPECT_EQ(Site(), before);
}

/// No set-user-ID program comes about by way of the mail owner's directory.
TEST_F(ModuleDatabase, GetsNoMoreThanPermissions) {
    MakeSite(false);
    Run(Carried);
    prepared_.new_version.access.mode.bits = 06755;
    prepared_.new_version.access.owner = 0;
    EXPECT_EQ(TakeBack(prepared_, run_).left, SStringList());
    EXPECT_EQ(std::get<1>(Site()["Web.install"]), mode_t{S_IFREG | 0755});
}

}  // namespace
