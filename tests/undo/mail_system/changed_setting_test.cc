#include <gtest/gtest.h>

#include <thread>

#include "support/database/sdbfile.h"
#include "support/database/sqlite.h"
#include "tests/data_directory.h"
#include "undo/ways.h"

namespace {

class ChangedSetting : public testing::Test {
  protected:
    ChangedSetting() { Put("80"); }
    static void Put(const SStringList& values) {
        Sdbfile file("WWW-Server", 0);
        ASSERT_TRUE(file.Open("/Config", 1) && file.Set("Socket", values));
    }
    static SStringList Now() {
        Sdbfile file("WWW-Server", 0);
        EXPECT_TRUE(file.Open("/Config", 0));
        return file.Get("Socket");
    }

    DataDirectory data_;
    const UndoneRun run_;
    const change::SettingChanged change_ = {"WWW-Server", "/Config", "Socket", "8080", "80"};
};

TEST_F(ChangedSetting, IsSetBack) {
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::AsLeft);
    EXPECT_EQ(LookAt(change_, run_).text, "Set \"Socket\" of /Config in WWW-Server back to \"8080\"");
    EXPECT_TRUE(TakeBack(change_, run_).left.IsEmpty());
    EXPECT_EQ(Now(), "8080");
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::AsBefore);
    EXPECT_TRUE(TakeBack(change_, run_).left.IsEmpty());
}

TEST_F(ChangedSetting, GoesWhereThereWasNone) {
    const change::SettingChanged change = {"WWW-Server", "/Config", "Socket", {}, "80"};
    EXPECT_EQ(LookAt(change, run_).text, "Set \"Socket\" of /Config in WWW-Server back to nothing");
    EXPECT_TRUE(TakeBack(change, run_).left.IsEmpty());
    EXPECT_TRUE(Now().IsEmpty());
}

TEST_F(ChangedSetting, StaysWhereSomebodyHasChangedIt) {
    Put({"81", "82"});
    const Finding finding = LookAt(change_, run_);
    EXPECT_EQ(finding.standing, Standing::Changed);
    EXPECT_EQ(finding.text,
              "\"Socket\" of /Config in WWW-Server is \"81, 82\" by now; before Install it was \"8080\"");
    EXPECT_EQ(TakeBack(change_, run_).left, finding.text);
    EXPECT_EQ(Now(), SStringList({"81", "82"}));
}

TEST_F(ChangedSetting, IsFoundByItsPathToo) {
    const change::SettingChanged change = {data_.Config("WWW-Server"), "/Config", "Socket", "8080", "80"};
    EXPECT_EQ(LookAt(change, run_).standing, Standing::AsLeft);
    const change::SettingChanged elsewhere = {"/elsewhere/config/WWW-Server", "/Config", "Socket", "8080",
                                              "80"};
    EXPECT_EQ(LookAt(elsewhere, run_).standing, Standing::Unknown);
    EXPECT_FALSE(TakeBack(elsewhere, run_).left.IsEmpty());
    EXPECT_EQ(Now(), "80");
}

TEST_F(ChangedSetting, OfADamagedDatabaseIsUnknown) {
    data_.WriteConfig("WWW-Server", SString('x', 4096));
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::Unknown);
    EXPECT_FALSE(TakeBack(change_, run_).is_whole);
}

/// Another process has the value changed, but commits that only when Undo has read the run's.
class SettingMeanwhile : public ChangedSetting {
  protected:
    /// Takes the setting back, and ends the other's transaction while the lock is waited for.
    TakenBack TakeBackWhile(const char* change, const char* end) {
        const auto other = sqlite::Connection::Open(data_.Config("WWW-Server"), sqlite::Mode::Shared);
        EXPECT_TRUE(other->Execute("BEGIN IMMEDIATE") && other->Execute(change));
        EXPECT_EQ(LookAt(change_, run_).standing, Standing::AsLeft);
        const std::jthread ending([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(500));
            EXPECT_TRUE(other->Execute(end));
        });
        return TakeBack(change_, run_);
    }
};

TEST_F(SettingMeanwhile, IsNotOverwritten) {
    const TakenBack taken = TakeBackWhile("UPDATE settings SET value = '8081'", "COMMIT");
    EXPECT_FALSE(taken.is_whole);
    EXPECT_EQ(taken.left,
              "\"Socket\" of /Config in WWW-Server is \"8081\" by now; before Install it was \"8080\"");
    EXPECT_EQ(Now(), "8081");
    EXPECT_EQ(LookAt(change_, run_).text, taken.left[0]);
}

TEST_F(SettingMeanwhile, StaysRemoved) {
    const TakenBack taken = TakeBackWhile("DELETE FROM settings", "COMMIT");
    EXPECT_EQ(taken.left,
              "\"Socket\" of /Config in WWW-Server is nothing by now; before Install it was \"8080\"");
    EXPECT_TRUE(Now().IsEmpty());
}

TEST_F(SettingMeanwhile, MayBeSetBackByTheOther) {
    const TakenBack taken = TakeBackWhile("UPDATE settings SET value = '8080'", "COMMIT");
    EXPECT_TRUE(taken.is_whole);
    EXPECT_TRUE(taken.left.IsEmpty());
    EXPECT_EQ(Now(), "8080");
}

TEST_F(SettingMeanwhile, IsSetBackWhereTheOtherRollsBack) {
    const TakenBack taken = TakeBackWhile("UPDATE settings SET value = '8081'", "ROLLBACK");
    EXPECT_TRUE(taken.is_whole);
    EXPECT_TRUE(taken.left.IsEmpty());
    EXPECT_EQ(Now(), "8080");
}

}  // namespace
