#include "support/database/snapshot.h"

#include <gtest/gtest.h>

#include "support/database/database_file.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

const DatabaseFormat kWithLog = {"77", "CREATE TABLE t (x)", "WAL", "NORMAL"};
const DatabaseFormat kWithJournal = {"77", "CREATE TABLE t (x)", "DELETE", "FULL"};
constexpr int kRows = 20;

/// A row fills a page, so that every commit moves the table's root and adds to its end.
const char* const kInsert = "INSERT INTO t VALUES (hex(zeroblob(3000)))";

SString RowsIn(const std::optional<SString>& bytes) {
    const auto copy = bytes ? sqlite::Connection::OpenCopy(*bytes) : nullptr;
    if (!copy || copy->Value("PRAGMA integrity_check") != "ok") return "damaged";
    return copy->Value("SELECT count(*) FROM t").value_or("no table");
}

class SnapshotTest : public testing::Test {
  protected:
    std::unique_ptr<sqlite::Connection> Fill(const DatabaseFormat& format) {
        auto connection = OpenForWriting(path_, format).connection;
        for (int i = 0; i < kRows; ++i) EXPECT_TRUE(connection->Execute(kInsert));
        return connection;
    }
    TemporaryFolder folder_;
    SString path_ = folder_ / "database";
};

TEST_F(SnapshotTest, HasWhatWaitsInTheLog) {
    const auto open = Fill(kWithLog);
    ASSERT_GT(FileSize(path_ + "-wal"), 0);
    EXPECT_EQ(RowsIn(ReadSnapshot(path_)), SString(kRows));
    EXPECT_NE(RowsIn(MapFileRead(path_)), SString(kRows));
}

TEST_F(SnapshotTest, HasAllWithoutALog) {
    Fill(kWithLog);
    EXPECT_EQ(FileSize(path_ + "-wal"), -1);
    EXPECT_EQ(RowsIn(ReadSnapshot(path_)), SString(kRows));
    EXPECT_EQ(FileSize(path_ + "-shm"), -1);
}

TEST_F(SnapshotTest, HasWhatFollowsACheckpoint) {
    const auto open = Fill(kWithLog);
    ASSERT_TRUE(open->Execute("PRAGMA wal_checkpoint(RESTART)"));
    ASSERT_TRUE(open->Execute("DELETE FROM t WHERE rowid % 2"));
    EXPECT_EQ(RowsIn(ReadSnapshot(path_)), SString(kRows / 2));
}

TEST_F(SnapshotTest, IsWholeWithATornLog) {
    const auto open = Fill(kWithLog);
    const SString database = MapFileRead(path_);
    const std::string log = MapFileRead(path_ + "-wal").Bytes();
    long least = 0;
    for (size_t length = 0; length <= log.size(); length += 1009) {
        const SString rows = RowsIn(WithLog(database, log.substr(0, length)));
        EXPECT_NE(rows, "damaged") << length;
        EXPECT_GE(rows.ToNumber(), least) << length;
        least = rows.ToNumber();
    }
    EXPECT_GT(least, kRows / 2);
}

TEST_F(SnapshotTest, TakesNoPageThatWasChangedSince) {
    const auto open = Fill(kWithLog);
    const SString database = MapFileRead(path_);
    const std::string log = MapFileRead(path_ + "-wal").Bytes();
    for (size_t at = 0; at < log.size(); at += 4999) {
        std::string changed = log;
        changed[at] = static_cast<char>(changed[at] ^ 0x55);
        EXPECT_NE(RowsIn(WithLog(database, changed)), "damaged") << at;
    }
}

TEST_F(SnapshotTest, IsNoneOfADatabaseThatIsWritten) {
    Fill(kWithJournal);
    EXPECT_EQ(RowsIn(ReadSnapshot(path_)), SString(kRows));
    folder_.Write("database-journal", "begun");
    EXPECT_EQ(ReadSnapshot(path_), std::nullopt);
}

TEST_F(SnapshotTest, IsNoneOfAMissingFile) {
    EXPECT_EQ(ReadSnapshot(path_), std::nullopt);
}

}  // namespace
