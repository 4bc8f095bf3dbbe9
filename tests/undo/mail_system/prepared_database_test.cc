// What the way back of a module's new database tells apart: what the run wrote, and what came since.
#include "support/system/identity.h"
#include "tests/undo/mail_system/module_database.h"

namespace {

class PreparedDatabase : public ModuleDatabase {
  protected:
    /// As an administrator copies a newer version over the one that is there: the same file, other bytes.
    void CopyOver(const SString& socket) const {
        Put("newer", "Socket", socket);
        Put("newer", "Version", "3");
        const SString path = data_.Config("Web.install");
        const auto id = FileIdOf(path);
        data_.WriteConfig("Web.install", MapFileRead(data_.Config("newer")));
        ASSERT_TRUE(id && IsThatFile(path, *id));
        RemoveFile(data_.Config("newer"));
    }
    SString AnotherOne() const {
        return data_.Config("Web.install") +
               " is another one than Install put into service; the one from before is " + run_.kept +
               "Web.install";
    }
};

TEST_F(PreparedDatabase, IsLeftWhereANewerOneWasCopiedOverIt) {
    for (const Stage stage : {Prepared, Carried, Linked, BackedUp}) {
        SCOPED_TRACE(stage);
        MakeSite(false);
        Run(stage);
        CopyOver("8080");
        const SString newer = MapFileRead(data_.Config("Web.install"));
        EXPECT_EQ(OfPreparation(), stage < Linked ? Standing::Changed : Standing::AsLeft);  // the backup
        EXPECT_EQ(TakeAllBack(), AnotherOne());
        EXPECT_EQ(MapFileRead(data_.Config("Web.install")), newer);
        EXPECT_EQ(data_.Listing(), "Web Web.install");
        for (const auto& [name, rest] : Site()) RemoveFile(data_.Config(name));
        exchanged_ = {};
    }
}

/// The new version that Undo made anew waits as a file of its own.
TEST_F(PreparedDatabase, IsLeftWhereANewerOneCameAfterUndo) {
    MakeSite(false);
    Run(Exchanged);
    EXPECT_EQ(TakeAllBack(), SStringList());
    CopyOver("80");
    const Listing after = Site();
    EXPECT_EQ(TakeAllBack(), AnotherOne());
    EXPECT_EQ(Site(), after);
}

/// The plan tells it before the exchange is taken back.
TEST_F(PreparedDatabase, IsLeftWhereANewerOneCameAfterTheExchange) {
    for (const bool has_older_backup : {false, true}) {
        SCOPED_TRACE(has_older_backup);
        MakeSite(has_older_backup);
        Run(Exchanged);
        Put("Web.install", "Version", "3");
        const Finding plan = LookAt(prepared_, run_);
        EXPECT_EQ(plan.standing, has_older_backup ? Standing::AsLeft : Standing::Changed);
        EXPECT_EQ(plan.text,
                  has_older_backup ? "Put " + data_.Config("Web.backup") + " back as it was" : AnotherOne());
        EXPECT_EQ(plan.by_hand, has_older_backup ? SStringList(AnotherOne()) : SStringList());
        EXPECT_EQ(TakeAllBack(), AnotherOne());
        EXPECT_EQ(Socket("Web"), "8080");
        EXPECT_EQ(EntryExists(data_.Config("Web.backup")), has_older_backup);
        for (const auto& [name, rest] : Site()) RemoveFile(data_.Config(name));
    }
}

TEST_F(PreparedDatabase, IsLeftWhereAnotherFileHasItsInodeNumber) {
    MakeSite(false);
    Run(Carried);
    --prepared_.id.born;
    const Listing before = Site();
    EXPECT_EQ(TakeAllBack(), AnotherOne());
    EXPECT_EQ(Site(), before);
}

TEST_F(PreparedDatabase, IsNotMadeAnewWhereSomebodyRemovedIt) {
    MakeSite(false);
    Run(Carried);
    RemoveFile(data_.Config("Web.install"));
    EXPECT_EQ(OfPreparation(), Standing::Changed);
    EXPECT_EQ(TakeAllBack(), data_.Config("Web.install") + " was removed since; the one from before is " +
                                 run_.kept + "Web.install");
    EXPECT_EQ(data_.Listing(), "Web");
}

TEST_F(PreparedDatabase, IsMadeAnewWhereTheRunWasKilledBetweenTwoSettings) {
    MakeSite(false);
    Put("Web", "Mode", "mine");
    Put("Web.install", "Mode", "theirs");
    const Listing before = Site();
    Run(Carried);
    EXPECT_NE(Site(), before);
    EXPECT_EQ(OfPreparation(), Standing::AsLeft);
    EXPECT_EQ(TakeAllBack(), SStringList());
    EXPECT_EQ(Site(), before);
}

TEST_F(PreparedDatabase, IsMadeAnewWhereTheRunWasKilledWithinASetting) {
    MakeSite(false);
    const Listing before = Site();
    Run(Carried);
    LeaveHalfWritten(data_.Config("Web.install"));
    const Listing killed = Site();
    EXPECT_EQ(OfPreparation(), Standing::AsLeft);
    EXPECT_EQ(Site(), killed);
    EXPECT_EQ(TakeAllBack(), SStringList());
    EXPECT_EQ(Site(), before);
}

TEST_F(PreparedDatabase, IsLeftForLaterWhileSomebodyWritesIt) {
    MakeSite(false);
    Run(Carried);
    const auto other = sqlite::Connection::Open(data_.Config("Web.install"), sqlite::Mode::Shared);
    ASSERT_TRUE(other->Execute("BEGIN IMMEDIATE; DELETE FROM settings"));
    EXPECT_FALSE(TakeBack(prepared_, run_).is_whole);
    ASSERT_TRUE(other->Execute("ROLLBACK"));
    EXPECT_EQ(Socket("Web.install"), "8080");
}

TEST_F(PreparedDatabase, SaysThatAnOlderBackupIsLostOfWhichThereIsNoCopy) {
    MakeSite(false);
    ASSERT_EQ(symlink("elsewhere", data_.Config("Web.backup").CString()), 0);
    Run(Exchanged);
    prepared_.older_backup = {true};
    EXPECT_EQ(TakeAllBack(), "No copy was kept of " + data_.Config("Web.backup") + ", as it was before");
    EXPECT_EQ(Socket("Web"), "8080");
}

TEST_F(PreparedDatabase, LeavesAnOlderBackupThatWasNotReplaced) {
    MakeSite(false);
    ASSERT_EQ(symlink("elsewhere", data_.Config("Web.backup").CString()), 0);
    const Listing before = Site();
    Run(Linked);
    prepared_.older_backup = {true};
    EXPECT_EQ(TakeAllBack(), SStringList());
    EXPECT_EQ(Site(), before);
}

/// The mail owner makes it anew, who could not have read it.
TEST_F(PreparedDatabase, GivesRootItsOlderBackupBack) {
    MakeSite(true);
    data_.GiveTo(kMail, kMail);
    ASSERT_EQ(chown(data_.Config("Web.backup").CString(), 0, 0), 0);
    ASSERT_EQ(chmod(data_.Config("Web.backup").CString(), 0600), 0);
    const Listing before = Site();
    Run(Exchanged);
    {
        const AsUser mail_owner({kMail, kMail, {kMail}});
        ASSERT_TRUE(mail_owner.IsTaken());
        EXPECT_EQ(TakeAllBack(), SStringList());
        EXPECT_EQ(TakeAllBack(), SStringList());
    }
    EXPECT_EQ(Site(), before);
}

TEST_F(PreparedDatabase, IsMadeAnewOnlyWhereTheMailOwnerMayWrite) {
    MakeSite(false);
    Run(Carried);
    for (const char* folder : {"", "config"}) chmod((data_.Path() + folder).CString(), 0755);
    const Listing before = Site();
    {
        const AsUser mail_owner({kMail, kMail, {kMail}});
        ASSERT_TRUE(mail_owner.IsTaken());
        const TakenBack taken = TakeBack(prepared_, run_);
        EXPECT_FALSE(taken.is_whole);
    }
    EXPECT_EQ(Site(), before);
}

TEST_F(PreparedDatabase, IsNotTakenBackInAnotherDataDirectory) {
    MakeSite(false);
    Run(Carried);
    const Listing before = Site();
    const DataDirectory other;
    EXPECT_EQ(OfPreparation(), Standing::Unknown);
    EXPECT_EQ(TakeAllBack(), SStringList());
    EXPECT_EQ(Site(), before);
}

class ExchangedDatabase : public ModuleDatabase {};

TEST_F(ExchangedDatabase, IsLookedAtWithoutAChange) {
    MakeSite(false);
    Run(Exchanged);
    LeaveHalfWritten(data_.Config("Web"));
    const Listing killed = Site();
    EXPECT_EQ(OfExchange(), Standing::AsLeft);
    EXPECT_EQ(OfPreparation(), Standing::AsLeft);
    EXPECT_EQ(Site(), killed);
}

TEST_F(ExchangedDatabase, ThatIsBackAndWasChangedSinceStillGetsItsOtherVersionsBack) {
    MakeSite(true);
    Run(Exchanged);
    EXPECT_EQ(TakeExchangeBack(), SStringList());
    Put("Web", "Socket", "9090");
    EXPECT_EQ(OfPreparation(), Standing::AsLeft);
    EXPECT_EQ(TakeBack(prepared_, run_).left, SStringList());
    EXPECT_EQ(Socket("Web"), "9090");
    EXPECT_EQ(Socket("Web.install"), "80");
    EXPECT_EQ(Socket("Web.backup"), "70");
}

/// Where the backup is a copy, it is removed after FILE is back.
TEST_F(ExchangedDatabase, ThatWasChangedAfterAnUndoWasKilledTellsWhereItsVersionsAre) {
    MakeSite(true);
    const SString web = data_.Config("Web");
    ASSERT_EQ(chown(web.CString(), 0, 8), 0);
    Run(Exchanged);
    CopyBackup();
    const SString copy = MapFileRead(web + ".backup");
    EXPECT_EQ(TakeExchangeBack(), SStringList());
    data_.WriteConfig("Web.backup", copy);
    Put("Web", "Socket", "9090");
    EXPECT_EQ(OfExchange(), Standing::Changed);
    EXPECT_EQ(
        LookAt(prepared_, run_).text,
        web + ".install is not made anew, as what Install put into service is gone; the one from before is " +
            beside_ / "Web.install");
    EXPECT_EQ(Socket("Web"), "9090");
}

TEST_F(ExchangedDatabase, ThatSomebodyReplacedKeepsSomebodysBackup) {
    MakeSite(false);
    Run(Exchanged);
    Put("Web", "Socket", "9090");
    const SString web = data_.Config("Web");
    const SString bytes = MapFileRead(web);
    data_.WriteConfig("Other", bytes);
    ASSERT_TRUE(Rename(data_.Config("Other"), web) && RemoveFile(web + ".backup"));
    EXPECT_EQ(LookAt(exchanged_, run_).text, web + " was changed since Install replaced it");
    data_.WriteConfig("Web.backup", bytes);
    TakeAllBack();
    EXPECT_EQ(MapFileRead(web + ".backup"), bytes);
}

TEST_F(ExchangedDatabase, ThatIsGoneIsNotMade) {
    MakeSite(false);
    Run(Exchanged);
    RemoveFile(data_.Config("Web"));
    data_.WriteConfig("Web-journal", "");
    EXPECT_EQ(OfExchange(), Standing::Changed);
    EXPECT_EQ(TakeAllBack().Count(), 1U);
    EXPECT_EQ(data_.Listing(), "Web-journal Web.backup");
}

TEST_F(ExchangedDatabase, StaysWhereTheOneBeforeCouldNotBeRead) {
    MakeSite(false);
    Run(Exchanged);
    exchanged_.before = "";
    changes_.back() = exchanged_;
    const SString file = data_.Config("Web");
    const SString text =
        file + " stays, as the version from before could not be read; that is " + file + ".backup";
    EXPECT_EQ(OfExchange(), Standing::ByHand);
    EXPECT_EQ(OfPreparation(), Standing::AsBefore);
    EXPECT_EQ(TakeAllBack(), text);
}

}  // namespace
