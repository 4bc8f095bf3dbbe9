#include "support/database/sdbfile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <thread>

#include "support/database/sqlite.h"
#include "support/process/command.h"
#include "tests/data_directory.h"
#include "tests/refusal.h"

namespace {

class SdbfileTest : public testing::Test {
  protected:
    static int Store(const SString& table, const SString& key, const SStringList& values) {
        Sdbfile database("Module", 0);
        return database.Open(table, 1) != 0 && database.Set(key, values) != 0;
    }
    static SStringList Load(const SString& table, const SString& key) {
        Sdbfile database("Module", 0);
        return database.Open(table, 0) != 0 ? database.Get(key) : SStringList("(not open)");
    }

    DataDirectory data_;
};

const SString kNul(std::string("a\0b", 3));

TEST_F(SdbfileTest, KeepsValuesUnderTableAndKey) {
    const struct {
        const char* table;
        SString key;
        SStringList values;
    } cases[] = {
        {"/Config", "Socket", "80"},
        {"/Config", "WWWAccess", {"one.example", "two.example", "one.example"}},
        {"/Config/Sub", "Socket", "81"},
        {"/", "Socket", ""},
        {"/Config", "socket", {kNul, "\xff\xfe", "two\r\nlines", ""}},
        {"/Config", kNul, "a key of any bytes"},
        {"/Config", "", "an empty key"},
        {"/Config", "none", SStringList()},
    };
    for (const auto& c : cases) EXPECT_TRUE(Store(c.table, c.key, c.values)) << c.key;
    for (const auto& c : cases) EXPECT_EQ(Load(c.table, c.key), c.values) << c.key;
    EXPECT_EQ(Load("/Config", "unknown"), SStringList());
    EXPECT_EQ(data_.Listing(), "Module");
}

TEST_F(SdbfileTest, ReplacesValues) {
    EXPECT_TRUE(Store("/Config", "Socket", {"80", "81", "82"}));
    EXPECT_TRUE(Store("/Config", "Socket", "8080"));
    EXPECT_EQ(Load("/Config", "Socket"), SStringList("8080"));
    EXPECT_TRUE(Store("/Config", "Socket", SStringList()));
    EXPECT_EQ(Load("/Config", "Socket"), SStringList());
}

TEST_F(SdbfileTest, OneTableHasManySpellings) {
    EXPECT_TRUE(Store("/Config/Sub", "Key", "value"));
    for (const char* path : {"/Config/Sub", "Config/Sub", "/Config/Sub/", "//Config///Sub//"}) {
        EXPECT_EQ(Load(path, "Key"), SStringList("value")) << path;
    }
    EXPECT_TRUE(Store("", "Key", "outermost"));
    EXPECT_EQ(Load("/", "Key"), SStringList("outermost"));
}

TEST_F(SdbfileTest, ReadingMakesNothingAndTellsWhatIsMissing) {
    Sdbfile database("Module", 0);
    EXPECT_FALSE(database.Open("/Config", 0));
    EXPECT_TRUE(database.IsMissing());
    EXPECT_EQ(data_.Listing(), "");
    EXPECT_TRUE(database.Open("/Config", 1));
    EXPECT_FALSE(database.IsMissing());
    EXPECT_FALSE(database.Open("/Other", 0));
    EXPECT_TRUE(database.IsMissing());
    EXPECT_FALSE(database.Open("/", 0));  // no table by having one below it
    EXPECT_TRUE(database.Open("/Config", 0));
    EXPECT_FALSE(database.Open("/Other", 0));
    data_.WriteConfig("Damaged", "text");
    database.Init("Damaged", 0);
    EXPECT_FALSE(database.Open("/Config", 0));
    EXPECT_FALSE(database.IsMissing());
}

TEST_F(SdbfileTest, AnswersZeroWhenNotOpen) {
    Sdbfile database;
    SStringList values("before");
    EXPECT_FALSE(database.Open("/Config", 1));
    EXPECT_FALSE(database.Set("Key", "value"));
    EXPECT_FALSE(database.Read("Key", &values));
    EXPECT_TRUE(values.IsEmpty());
    EXPECT_TRUE(database.Get("Key").IsEmpty());
    database.CloseDB();
    database.CloseDB();

    database.Init("Module", 0);
    EXPECT_TRUE(database.Open("/Config", 1));
    EXPECT_TRUE(database.Set("Key", "value"));
    EXPECT_TRUE(database.Open("/Config", 0));
    EXPECT_FALSE(database.Set("Key", "for reading only"));
    EXPECT_EQ(database.Get("Key"), SStringList("value"));
    database.CloseDB();
    EXPECT_FALSE(database.Set("Key", "closed"));
    EXPECT_TRUE(database.Get("Key").IsEmpty());
    EXPECT_EQ(Load("/Config", "Key"), SStringList("value"));
}

TEST_F(SdbfileTest, TwoHandlesOfOneDatabaseSeeEachOther) {
    Sdbfile first("Module", 0);
    Sdbfile second("Module", 0);
    ASSERT_TRUE(first.Open("/Config", 1));
    ASSERT_TRUE(second.Open("/Config", 1));
    EXPECT_TRUE(first.Set("Key", "first"));
    EXPECT_EQ(second.Get("Key"), SStringList("first"));
    EXPECT_TRUE(second.Set("Key", "second"));
    EXPECT_EQ(first.Get("Key"), SStringList("second"));
}

TEST_F(SdbfileTest, WaitsForALockAndGivesUp) {
    ASSERT_TRUE(Store("/Config", "Key", "value"));
    const auto other = sqlite::Connection::Open(data_.Config("Module"), sqlite::Mode::Shared);
    ASSERT_TRUE(other->Execute("BEGIN EXCLUSIVE"));
    Sdbfile database("Module", 0);
    EXPECT_FALSE(database.Open("/Config", 0));
    EXPECT_FALSE(database.IsMissing());
    ASSERT_TRUE(other->Execute("ROLLBACK"));
    EXPECT_TRUE(database.Open("/Config", 0));
}

TEST_F(SdbfileTest, SetsOnlyWhereTheExpectedValuesAre) {
    const struct {
        const char* what;
        SStringList now;
        SStringList expected;
        Sdbfile::Outcome outcome;
    } cases[] = {
        {"as expected", {"80", "81"}, {"80", "81"}, Sdbfile::Outcome::Set},
        {"nothing, as expected", {}, {}, Sdbfile::Outcome::Set},
        {"another value", "82", "80", Sdbfile::Outcome::Differs},
        {"another order", {"81", "80"}, {"80", "81"}, Sdbfile::Outcome::Differs},
        {"more values", {"80", "81"}, "80", Sdbfile::Outcome::Differs},
        {"nothing", {}, "80", Sdbfile::Outcome::Differs},
        {"something", "80", {}, Sdbfile::Outcome::Differs},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Sdbfile database("Module", 0);
        SStringList found("left over");
        ASSERT_TRUE(database.Open("/Config", 1) && database.Set("Key", c.now));
        EXPECT_EQ(database.SetIf("Key", c.expected, "new", &found), c.outcome);
        EXPECT_EQ(found, c.now);
        EXPECT_EQ(Load("/Config", "Key"), c.outcome == Sdbfile::Outcome::Set ? SStringList("new") : c.now);
    }
}

TEST_F(SdbfileTest, SetsNothingWhereItIsNotOpenForWriting) {
    ASSERT_TRUE(Store("/Config", "Key", "value"));
    Sdbfile database("Module", 0);
    SStringList found("left over");
    EXPECT_EQ(database.SetIf("Key", "value", "not open", &found), Sdbfile::Outcome::Failed);
    EXPECT_TRUE(found.IsEmpty());
    ASSERT_TRUE(database.Open("/Config", 0));
    EXPECT_EQ(database.SetIf("Key", "value", "for reading only", &found), Sdbfile::Outcome::Failed);
    EXPECT_EQ(Load("/Config", "Key"), SStringList("value"));
    ASSERT_TRUE(database.Open("/Config", 1));
    ASSERT_TRUE(RemoveFile(data_.Config("Module")));
    EXPECT_EQ(database.SetIf("Key", {}, "no file", &found), Sdbfile::Outcome::Failed);
    EXPECT_EQ(data_.Listing(), "");
}

/// A handle that stores while another connection has changed "value" to "theirs", but not committed that.
class StoreMeanwhile : public SdbfileTest {
  protected:
    StoreMeanwhile() {
        EXPECT_TRUE(Store("/Config", "Key", "value"));
        EXPECT_TRUE(handle_.Open("/Config", 1));
        other_ = sqlite::Connection::Open(data_.Config("Module"), sqlite::Mode::Shared);
        EXPECT_TRUE(other_->Execute("BEGIN IMMEDIATE; UPDATE settings SET value = 'theirs'"));
    }

    /// Once the handle has the file open, and waits for the lock or is about to; or has given up.
    template <typename Act>
    std::jthread Meanwhile(Act act) const {
        return std::jthread([this, act, before = OpenFiles()](const std::stop_token& end) {
            while (!end.stop_requested() && OpenFiles() == before) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            act();
        });
    }
    Sdbfile::Outcome SetIf() { return handle_.SetIf("Key", "value", "ours", &found_); }

    Sdbfile handle_{"Module", 0};
    std::unique_ptr<sqlite::Connection> other_;
    SStringList found_;

  private:
    bool IsOpenAs(const std::filesystem::path& descriptor) const {
        std::error_code gone;
        return std::filesystem::read_symlink(descriptor, gone) == data_.Config("Module").Bytes();
    }
    std::ptrdiff_t OpenFiles() const {
        const std::filesystem::directory_iterator descriptors("/proc/self/fd");
        return std::count_if(begin(descriptors), end(descriptors),
                             [this](const auto& descriptor) { return IsOpenAs(descriptor.path()); });
    }
};

TEST_F(StoreMeanwhile, DoesNotOverwriteWhatIsCommittedThen) {
    const std::jthread other = Meanwhile([this] { EXPECT_TRUE(other_->Execute("COMMIT")); });
    EXPECT_EQ(SetIf(), Sdbfile::Outcome::Differs);
    EXPECT_EQ(found_, SStringList("theirs"));
    EXPECT_EQ(Load("/Config", "Key"), SStringList("theirs"));
}

TEST_F(StoreMeanwhile, GoesOnWhereTheOtherRollsBack) {
    const std::jthread other = Meanwhile([this] { EXPECT_TRUE(other_->Execute("ROLLBACK")); });
    EXPECT_EQ(SetIf(), Sdbfile::Outcome::Set);
    EXPECT_EQ(Load("/Config", "Key"), SStringList("ours"));
}

TEST_F(StoreMeanwhile, FailsWhereTheLockIsNotHad) {
    EXPECT_EQ(SetIf(), Sdbfile::Outcome::Failed);
    ASSERT_TRUE(other_->Execute("ROLLBACK"));
    EXPECT_EQ(Load("/Config", "Key"), SStringList("value"));
}

// What is stored in the file that was in service before would be lost, or change a backup.
TEST_F(StoreMeanwhile, FailsWhereTheFileIsReplaced) {
    const SString file = data_.Config("Module");
    const auto replace = [&] {
        EXPECT_TRUE(Rename(file, data_.Config("Module.backup")));
        EXPECT_TRUE(other_->Execute("ROLLBACK"));
    };
    for (const bool is_conditional : {true, false}) {
        {
            const std::jthread other = Meanwhile(replace);
            const bool is_set =
                is_conditional ? SetIf() != Sdbfile::Outcome::Failed : handle_.Set("Key", "ours") != 0;
            EXPECT_FALSE(is_set);
        }
        ASSERT_TRUE(Rename(data_.Config("Module.backup"), file));
        EXPECT_EQ(Load("/Config", "Key"), SStringList("value"));
        ASSERT_TRUE(other_->Execute("BEGIN IMMEDIATE"));
    }
}

// A file-size limit makes writes fail as a full disk does.
TEST_F(SdbfileTest, FullDiskLeavesTheOldValues) {
    ASSERT_TRUE(Store("/Config", "Key", "old"));
    Sdbfile database("Module", 0);
    ASSERT_TRUE(database.Open("/Config", 1));
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    const rlimit full{20000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
    const int is_set = database.Set("Key", SString('x', 200000));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    signal(SIGXFSZ, handler);
    EXPECT_FALSE(is_set);
    EXPECT_EQ(database.Get("Key"), SStringList("old"));
    EXPECT_TRUE(database.Set("Key", "new"));
    database.CloseDB();
    EXPECT_EQ(Load("/Config", "Key"), SStringList("new"));
    EXPECT_EQ(data_.Listing(), "Module");
}

TEST_F(SdbfileTest, RefusedRowLeavesTheOldValues) {
    ASSERT_TRUE(Store("/Config", "Key", {"one", "two"}));
    const auto other = sqlite::Connection::Open(data_.Config("Module"), sqlite::Mode::Shared);
    for (const SString& change :
         {RefuseToRemoveRows("settings", "1"), RefuseRows("settings", "value = 'bad'")}) {
        const SString sql = data_.WriteConfig("refusal.sql", change);
        const SString said = ReadCommand("sqlite3 " + data_.Config("Module") + " <" + sql + " 2>&1").Join();
        ASSERT_EQ(said.Bytes().find("rror"), std::string::npos) << said;
        EXPECT_FALSE(Store("/Config", "Key", {"good", "bad"})) << change;
        EXPECT_EQ(Load("/Config", "Key"), SStringList({"one", "two"})) << change;
        ASSERT_TRUE(other->Execute("DROP INDEX refuse"));
    }
}

/// Another process writes half of a transaction and is killed: its journal or log stays.
void LeaveUnfinished(const SString& path, const char* journal_mode) {
    const pid_t child = fork();
    if (child == 0) {
        const auto connection = sqlite::Connection::Open(path, sqlite::Mode::Shared);
        connection->Execute(journal_mode);
        connection->Execute("PRAGMA cache_size = 1; PRAGMA cache_spill = 1; BEGIN");
        connection->Execute("UPDATE settings SET value = hex(zeroblob(100000))");
        connection->Execute("INSERT INTO settings VALUES ('/x', 'y', 0, hex(zeroblob(100000)))");
        raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
}

TEST_F(SdbfileTest, SettlesWhatAKilledProcessLeft) {
    const SString path = data_.Config("Module");
    const struct {
        const char* what;
        void (*leave)(const SString& path);
        SString beside;
    } cases[] = {
        {"a journal", [](const SString& p) { LeaveUnfinished(p, "PRAGMA journal_mode = DELETE"); },
         "Module Module-journal"},
        {"a log", [](const SString& p) { LeaveUnfinished(p, "PRAGMA journal_mode = WAL"); },
         "Module Module-shm Module-wal"},
        {"an empty journal", [](const SString& p) { std::ofstream((p + "-journal").Bytes()).flush(); },
         "Module Module-journal"},
        {"a journal without a head",
         [](const SString& p) { std::ofstream((p + "-journal").Bytes()) << std::string(600, '\0'); },
         "Module Module-journal"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ASSERT_TRUE(Store("/Config", "Key", {"one", "two"}));
        c.leave(path);
        EXPECT_EQ(data_.Listing(), c.beside);
        EXPECT_TRUE(SettleDatabase("Module"));
        EXPECT_EQ(data_.Listing(), "Module");
        EXPECT_EQ(Load("/Config", "Key"), SStringList({"one", "two"}));
    }
}

TEST_F(SdbfileTest, ReadingWorksOffAJournalFirst) {
    ASSERT_TRUE(Store("/Config", "Key", "value"));
    LeaveUnfinished(data_.Config("Module"), "PRAGMA journal_mode = DELETE");
    EXPECT_EQ(Load("/Config", "Key"), SStringList("value"));
    EXPECT_EQ(data_.Listing(), "Module");
}

TEST_F(SdbfileTest, SettlesNothingWhereNothingIsAndFailsWhereItCannot) {
    EXPECT_TRUE(SettleDatabase("Module"));
    EXPECT_EQ(data_.Listing(), "");
    data_.WriteConfig("Module-journal", "");
    EXPECT_TRUE(SettleDatabase("Module"));
    EXPECT_EQ(data_.Listing(), "Module-journal");
    RemoveFile(data_.Config("Module-journal"));
    EXPECT_FALSE(SettleDatabase(""));
    EXPECT_FALSE(SettleDatabase("../Module"));
    ASSERT_TRUE(Store("/Config", "Key", "value"));
    EXPECT_TRUE(SettleDatabase("Module"));
    const auto other = sqlite::Connection::Open(data_.Config("Module"), sqlite::Mode::Shared);
    ASSERT_TRUE(other->Execute("BEGIN EXCLUSIVE; DELETE FROM settings"));
    EXPECT_FALSE(SettleDatabase("Module"));  // another process is in the middle of it
}

class HeldDatabase : public SdbfileTest {
  protected:
    /// Whether another process may write at once.
    bool OtherMayWrite() const {
        const SString sql = "INSERT INTO settings VALUES ('/Config', 'Other', random(), '1')";
        return ReadCommand("sqlite3 " + data_.Config("Module") + " \"" + sql + "\" 2>&1").IsEmpty();
    }
    Sdbfile handle_{"Module", 0};
};

TEST_F(HeldDatabase, IsReadButNotWritten) {
    ASSERT_TRUE(Store("/Config", "Key", "value"));
    EXPECT_TRUE(OtherMayWrite());
    ASSERT_TRUE(handle_.Hold());
    EXPECT_FALSE(OtherMayWrite());
    EXPECT_TRUE(handle_.Open("/Config", 0));
    EXPECT_EQ(handle_.Get("Key"), SStringList("value"));
    EXPECT_FALSE(handle_.Open("/Other", 0));
    EXPECT_TRUE(handle_.IsMissing());
    EXPECT_TRUE(handle_.Get("Key").IsEmpty());
    EXPECT_FALSE(handle_.Open("/Config", 1));
    EXPECT_EQ(handle_.Bytes()->Length(), static_cast<size_t>(FileSize(data_.Config("Module"))));
    EXPECT_FALSE(OtherMayWrite());  // reading has not dropped the lock
    EXPECT_EQ(data_.Listing(), "Module");
    handle_.CloseDB();
    EXPECT_TRUE(OtherMayWrite());
}

TEST_F(HeldDatabase, IsNotHadWhileAnotherProcessWrites) {
    ASSERT_TRUE(Store("/Config", "Key", "value"));
    const auto other = sqlite::Connection::Open(data_.Config("Module"), sqlite::Mode::Shared);
    ASSERT_TRUE(other->Execute("BEGIN IMMEDIATE"));
    EXPECT_FALSE(handle_.Hold());
    EXPECT_FALSE(handle_.Open("/Config", 1) != 0 && handle_.Set("Key", "new") != 0);
    ASSERT_TRUE(other->Execute("ROLLBACK"));
    EXPECT_TRUE(handle_.Hold());
}

TEST_F(HeldDatabase, HasNothingBesideIt) {
    ASSERT_TRUE(Store("/Config", "Key", "value"));
    LeaveUnfinished(data_.Config("Module"), "PRAGMA journal_mode = DELETE");
    EXPECT_TRUE(handle_.Hold());
    EXPECT_EQ(data_.Listing(), "Module");
    handle_.CloseDB();
    LeaveUnfinished(data_.Config("Module"), "PRAGMA journal_mode = WAL");
    EXPECT_TRUE(handle_.Hold());
    EXPECT_EQ(data_.Listing(), "Module");
    handle_.CloseDB();
    data_.WriteConfig("Module-journal", "");  // nothing to work off: SQLite lets it lie
    EXPECT_TRUE(handle_.Hold());
    EXPECT_EQ(data_.Listing(), "Module");
    EXPECT_FALSE(OtherMayWrite());
}

TEST_F(HeldDatabase, NeedsNoLockWhereNobodyCanStore) {
    EXPECT_TRUE(handle_.Hold());  // there is none
    EXPECT_EQ(data_.Listing(), "");
    data_.WriteConfig("Module", "no database");
    EXPECT_TRUE(handle_.Hold());
    EXPECT_FALSE(handle_.Open("/Config", 0));
    data_.WriteConfig("Module-journal", "");
    EXPECT_FALSE(handle_.Hold());
}

// Whoever opened the empty file before the exchange would else begin a journal for it beside the new one.
TEST_F(HeldDatabase, IsMadeWhereTheFileIsEmpty) {
    data_.WriteConfig("Module", "");
    EXPECT_TRUE(handle_.Hold());
    EXPECT_FALSE(handle_.Open("/Config", 0));
    EXPECT_TRUE(handle_.IsMissing());
    EXPECT_GT(FileSize(data_.Config("Module")), 0);
}

TEST_F(SdbfileTest, ReadsNoListThatTheMemoryHasNoRoomFor) {
    ASSERT_TRUE(Store("/Config", "Socket", "80"));
    const SString sql =
        "DROP TABLE settings; CREATE TABLE settings (path, key, position,"
        " value AS (hex(zeroblob(4000000))), PRIMARY KEY (path, key, position)) WITHOUT ROWID;"
        "WITH RECURSIVE n(i) AS (VALUES (0) UNION ALL SELECT i + 1 FROM n WHERE i < 5000)"
        "INSERT INTO settings (path, key, position) SELECT '/Config', 'Socket', i FROM n";
    EXPECT_EQ(ReadCommand("sqlite3 " + data_.Config("Module") + " \"" + sql + "\" 2>&1").Join(), "");
    Sdbfile database("Module", 0);
    ASSERT_TRUE(database.Open("/Config", 0));
    SStringList values;
    EXPECT_FALSE(database.Read("Socket", &values));
    EXPECT_TRUE(database.Get("Socket").IsEmpty());
}

TEST_F(SdbfileTest, HandleFollowsTheFileInService) {
    ASSERT_TRUE(Store("/Config", "Key", "old"));
    Sdbfile database("Module", 0);
    ASSERT_TRUE(database.Open("/Config", 1));
    ASSERT_TRUE(Rename(data_.Config("Module"), data_.Config("Previous")));
    EXPECT_FALSE(database.Set("Key", "nowhere"));
    EXPECT_EQ(data_.Listing(), "Previous");
    Sdbfile other("Module", 0);
    ASSERT_TRUE(other.Open("/Other", 1));
    EXPECT_TRUE(database.Set("Key", "new"));
    EXPECT_EQ(Load("/Config", "Key"), SStringList("new"));
}

TEST_F(SdbfileTest, SurvivesDamageAnywhere) {
    {
        Sdbfile database("Module", 0);
        ASSERT_TRUE(database.Open("/Config", 1));
        for (int i = 0; i < 20; ++i) ASSERT_TRUE(database.Set("Key" + SString(i), SString('v', 500)));
    }
    const std::string whole = MapFileRead(data_.Config("Module")).Bytes();
    for (size_t at = 0; at < whole.size(); at += 397) {
        std::string damaged = whole;
        for (size_t i = at; i < std::min(at + 40, damaged.size()); ++i) {
            damaged[i] = static_cast<char>(damaged[i] ^ 0xa5);
        }
        data_.WriteConfig("Module", SString(damaged));
        Load("/Config", "Key7");
        Store("/Config", "Key8", "value");
        std::filesystem::remove(data_.Config("Module-journal").Bytes());
    }
    for (const size_t size : {size_t{1}, size_t{100}, size_t{4096}, whole.size() / 2}) {
        data_.WriteConfig("Module", SString(whole.substr(0, size)));
        Load("/Config", "Key7");
        Store("/Config", "Key8", "value");
    }
}

}  // namespace
