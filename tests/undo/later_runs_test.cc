#include "undo/later_runs.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "install/settings.h"
#include "tests/temporary_folder.h"
#include "undo/entries.h"
#include "undo/undone.h"

namespace {

constexpr char kFirst[] = "20261122T170405Z-1";
constexpr char kSecond[] = "20261122T170405Z-2";
constexpr char kThird[] = "20261122T170405Z-3";

const change::ModeSet kMode{"/var/mail", {0775}, {02775}};
const change::LinkMade kLink{"/usr/lib/sendmail", "/opt/sendmail", "/usr/lib/sendmail.bak"};
const change::SettingChanged kSetting{"/config/Dispatch", "/Config", "Key", {}, {}};

class LaterRunsTest : public testing::Test {
  protected:
    void Record(const SString& run, const std::vector<Change>& changes) {
        SString text = FormatLine();
        for (const Change& change : changes) text += LineOf({"2026-11-22T17:04:06Z", change});
        folder_.Write(run, text, 0600);
    }
    Records Read() const { return Records(folder_ / "."); }
    SString ChangedAgain(const Change& change) const {
        return LaterRuns(Read(), kFirst).ChangedAgain(change);
    }

    TemporaryFolder folder_;
};

TEST_F(LaterRunsTest, AreToldByWhatTheyChanged) {
    Record(kFirst, {kMode});
    Record(kSecond, {change::DirectoryMade{"/var/mail", "", {}}, kLink, kSetting});
    Record(kThird, {change::ModeSet{"/usr/lib/sendmail", {}, {}}, change::ServerStarted{}});
    EXPECT_EQ(ChangedAgain(kMode), SString("/var/mail was changed again by the later run ") + kSecond +
                                       ": take that one back first");
    EXPECT_TRUE(ChangedAgain(kLink).Matches(kThird));
    EXPECT_EQ(ChangedAgain(change::ModeSet{"/var/opt", {}, {}}), "");
    EXPECT_EQ(LaterRuns(Read(), kSecond).ChangedAgain(kMode), "");
}

TEST_F(LaterRunsTest, HaveGivenAMaildropAgainOnlyWhereThatWasDone) {
    change::MaildropGiven given;
    given.path = "/var/mail/anna";
    change::MaildropGiven other;
    other.path = "/var/mail/berta";
    Record(kFirst, {given, other});
    Record(kSecond, {given, change::ModeSet{other.path, {0600}, {0660}}});
    const LaterRuns later(Read(), kFirst);
    EXPECT_TRUE(later.HaveGivenAgain(given));
    EXPECT_FALSE(later.HaveGivenAgain(other));
}

TEST_F(LaterRunsTest, KeepTheMailSystemThatTheyStarted) {
    Record(kFirst, {change::ServerStarted{}});
    Record(kSecond, {change::ServerStarted{}});
    EXPECT_EQ(
        ChangedAgain(change::ServerStarted{}),
        gstr_ProductName + " was started again by the later run " + kSecond + ": take that one back first");
    const Records records = Read();
    UndoneRecord undone(records, kSecond);
    undone.Begin({});
    undone.Add(2, kTakenBack, {});
    EXPECT_EQ(ChangedAgain(change::ServerStarted{}), "");
}

TEST_F(LaterRunsTest, ChangeASettingOrAllOfItsDatabase) {
    Record(kFirst, {});
    Record(kSecond, {kSetting});
    auto other = kSetting;
    other.key = "Other";
    EXPECT_NE(ChangedAgain(kSetting), "");
    EXPECT_EQ(ChangedAgain(other), "");
    EXPECT_EQ(ChangedAgain(change::DatabaseExchanged{kSetting.database, {}, "", "", {}}), "");
    Record(kThird, {change::DatabaseExchanged{kSetting.database, {}, "", "", {}}});
    EXPECT_NE(ChangedAgain(other), "");
}

TEST_F(LaterRunsTest, CountAsFarAsTheyAreNotTakenBack) {
    Record(kFirst, {});
    Record(kSecond, {kMode, kLink});
    const Records records = Read();
    UndoneRecord undone(records, kSecond);
    undone.Begin({});
    undone.Add(2, kTakenBack, {});
    EXPECT_EQ(ChangedAgain(kMode), "");
    EXPECT_NE(ChangedAgain(kLink), "");
    EXPECT_EQ(LaterRuns(records, kFirst).Names(), SStringList(kSecond));
    undone.Finish({}, false);
    EXPECT_EQ(ChangedAgain(kLink), "");
    EXPECT_TRUE(LaterRuns(records, kFirst).Names().IsEmpty());
    UndoneRecord(records, kSecond).Begin({});  // once more, and killed
    EXPECT_EQ(ChangedAgain(kMode), "");
    EXPECT_NE(ChangedAgain(kLink), "");
}

TEST_F(LaterRunsTest, TellWhatNewVersionsTheyFoundAlsoWhenTheyAreTakenBack) {
    Record(kFirst, {});
    Record(kSecond, {kMode, change::DatabasePrepared{"/config/Dispatch", {}, {4711, 12}, {}}});
    const Records records = Read();
    UndoneRecord undone(records, kSecond);
    undone.Begin({});
    undone.Finish({}, false);
    const LaterRuns later(records, kFirst);
    ASSERT_EQ(later.FoundVersions().size(), 1U);
    EXPECT_EQ(later.FoundVersions()[0].prepared.id, (change::FileId{4711, 12}));
    EXPECT_EQ(later.FoundVersions()[0].kept, records.KeptOf(kSecond));
}

TEST_F(LaterRunsTest, AreToldWhereTheirRecordIsRefused) {
    Record(kFirst, {});
    folder_.Write(kSecond, FormatLine() + "{}\n", 0600);
    const LaterRuns later(Read(), kFirst);
    EXPECT_EQ(later.Refused(),
              SStringList("What this later run changed again is not known, as its record is refused: " +
                          SString(kSecond) + ": line 2 cannot be understood"));
}

TEST_F(LaterRunsTest, CountWhereItIsNotKnownWhetherTheyAreTakenBack) {
    Record(kFirst, {});
    Record(kSecond, {kMode});
    const SString undone = SString(kSecond) + ".undone";
    folder_.Write(undone, "", 0620);
    EXPECT_NE(ChangedAgain(kMode), "");
    EXPECT_EQ(LaterRuns(Read(), kFirst).Refused(),
              SStringList("Whether this later run was taken back is not known: " + undone +
                          ": others can write it"));
}

TEST_F(LaterRunsTest, KeepAChangeFromBeingTakenBack) {
    const SString path = folder_ / "directory";
    mkdir(path.CString(), 0700);
    chmod(path.CString(), 02775);
    const change::ModeSet mode{path, {0775}, {02775}};
    Record(kFirst, {mode});
    Record(kSecond, {mode});
    const LaterRuns later(Read(), kFirst);
    UndoneRun run;
    run.later = &later;
    const Entry entry{2, "", Change(mode)};
    EXPECT_EQ(LookAt(entry, run).standing, Standing::Later);
    chmod(path.CString(), 0775);
    EXPECT_EQ(LookAt(entry, run).standing, Standing::AsBefore);
    chmod(path.CString(), 0700);  // as the later one left it, or somebody
    EXPECT_EQ(LookAt(entry, run).standing, Standing::Later);
    EXPECT_TRUE(LookAt(entry, run).text.Matches("; .* was changed again by the later run "));
}

}  // namespace
