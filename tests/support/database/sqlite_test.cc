#include "support/database/sqlite.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>

#include "support/process/command.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

using sqlite::Connection;
using sqlite::Execution;
using sqlite::Mode;
using sqlite::Statement;
using sqlite::Step;
using sqlite::Transaction;

class Sqlite : public testing::Test {
  protected:
    std::unique_ptr<Connection> Open(Mode mode = Mode::Shared) { return Connection::Open(path_, mode); }
    /// A database that the sqlite3 shell has made, which takes no precautions.
    std::unique_ptr<Connection> OpenHostile(const SString& sql) const {
        const SString script = folder_.Write("hostile.sql", sql);
        const SString hostile = folder_ / "hostile";
        EXPECT_EQ(ReadCommand("sqlite3 " + hostile + " <" + script + " 2>&1").Join(), "");
        return Connection::Open(hostile, Mode::Shared);
    }

    TemporaryFolder folder_;
    SString path_ = folder_.Write("a b?c=d#e%20f\xc3\xa4'.db", "");
    std::unique_ptr<Connection> connection_ = Open();
};

TEST_F(Sqlite, StoresAnyBytes) {
    ASSERT_NE(connection_, nullptr);
    ASSERT_TRUE(connection_->Execute("CREATE TABLE t (id INTEGER PRIMARY KEY, value TEXT)"));
    Statement add = connection_->Prepare("INSERT INTO t (value) VALUES (?1)");
    Statement find = connection_->Prepare("SELECT id, value, NULL FROM t WHERE value = ?1");
    const SString values[] = {"",
                              "text",
                              SString(std::string("a\0b", 3)),
                              SString(std::string("a\0c", 3)),
                              "\xff\xfe\x80",
                              "two\nlines\r\n",
                              SString('x', 100000)};
    int64_t id = 0;
    for (const SString& value : values) {
        ASSERT_TRUE(Execution(add, value).Run());
        EXPECT_TRUE(connection_->HasChanged());
        EXPECT_EQ(connection_->LastId(), ++id);
        Execution query(find, value);
        ASSERT_EQ(query.Next(), Step::Row);
        EXPECT_EQ(query.Number(0), id);
        EXPECT_EQ(query.Text(1), value);
        EXPECT_FALSE(query.IsNull(1));
        EXPECT_TRUE(query.IsNull(2));
        EXPECT_EQ(query.Next(), Step::Done);
    }
}

TEST_F(Sqlite, AnswersFailureForWhatCannotBeRun) {
    EXPECT_FALSE(connection_->Execute("no SQL"));
    EXPECT_FALSE(connection_->Value("SELECT 1 WHERE 0"));
    EXPECT_FALSE(connection_->Value("no SQL"));
    Statement broken = connection_->Prepare("SELECT * FROM later WHERE x = ?1");
    EXPECT_EQ(Execution(broken, int64_t{1}).Next(), Step::Failed);
    ASSERT_TRUE(connection_->Execute("CREATE TABLE later (x)"));
    EXPECT_EQ(Execution(broken, int64_t{1}).Next(), Step::Done);  // prepared again, once it can be
}

TEST_F(Sqlite, OpensOnlyWhatIsThere) {
    EXPECT_EQ(Connection::Open(folder_ / "missing", Mode::Shared), nullptr);
    EXPECT_EQ(Connection::Open(folder_ / "", Mode::Shared), nullptr);
}

TEST_F(Sqlite, TransactionIsTakenBackUnlessCommitted) {
    ASSERT_TRUE(connection_->Execute("CREATE TABLE t (x)"));
    for (const bool commits : {false, true}) {
        {
            Transaction transaction(*connection_);
            EXPECT_TRUE(transaction.IsOpen());
            EXPECT_TRUE(connection_->Execute("INSERT INTO t VALUES (1)"));
            EXPECT_TRUE(!commits || transaction.Commit());
        }
        EXPECT_EQ(*connection_->Value("SELECT count(*) FROM t"), commits ? "1" : "0");
    }
}

TEST_F(Sqlite, TransactionThatTheLibraryGaveUpIsNotOpen) {
    ASSERT_TRUE(connection_->Execute("CREATE TABLE t (x)"));
    Transaction transaction(*connection_);
    EXPECT_TRUE(connection_->Execute("ROLLBACK"));
    EXPECT_FALSE(transaction.IsOpen());
    EXPECT_FALSE(transaction.Commit());
}

TEST_F(Sqlite, RunsNothingOfTheFilesOwn) {
    const auto connection = OpenHostile(
        "CREATE TABLE t (x); CREATE TABLE log (x);"
        "CREATE TRIGGER own AFTER INSERT ON t BEGIN INSERT INTO log VALUES (1); END;"
        "CREATE VIEW seen AS SELECT 1 AS x;"
        "CREATE VIRTUAL TABLE words USING fts5(x);"
        "CREATE VIRTUAL TABLE pages USING dbstat;");
    ASSERT_NE(connection, nullptr);
    EXPECT_TRUE(connection->Execute("INSERT INTO t VALUES (1)"));
    EXPECT_EQ(connection->Value("SELECT count(*) FROM log"), SString("0"));
    EXPECT_FALSE(connection->Value("SELECT x FROM seen"));
    EXPECT_FALSE(connection->Value("SELECT count(*) FROM words"));
    EXPECT_FALSE(connection->Value("SELECT count(*) FROM pages"));
    EXPECT_FALSE(connection->Execute("PRAGMA writable_schema = ON; DELETE FROM sqlite_schema"));
    EXPECT_FALSE(connection->Execute("ATTACH ':memory:' AS other"));
}

TEST_F(Sqlite, CallsNoSlowFunctionOfTheFilesOwn) {
    const auto connection = OpenHostile(
        "CREATE TABLE fast (x, y AS (upper(x))); INSERT INTO fast VALUES ('ab');"
        "CREATE TABLE slow (x, y AS (instr(x, 'b'))); INSERT INTO slow VALUES ('ab');");
    ASSERT_NE(connection, nullptr);
    EXPECT_EQ(connection->Value("SELECT y FROM fast"), SString("AB"));
    EXPECT_FALSE(connection->Value("SELECT y FROM slow"));
}

TEST_F(Sqlite, TakesNoValueOfUnreasonableLength) {
    ASSERT_TRUE(connection_->Execute("CREATE TABLE t (x)"));
    Statement add = connection_->Prepare("INSERT INTO t VALUES (?1)");
    const SString reasonable('x', 15 << 20);
    const SString unreasonable('x', 17 << 20);
    EXPECT_TRUE(Execution(add, reasonable).Run());
    EXPECT_FALSE(Execution(add, unreasonable).Run());
    EXPECT_FALSE(connection_->Value("SELECT hex(zeroblob(10000000))"));
}

TEST_F(Sqlite, GivesUpAStatementOfUnreasonablyMuchText) {
    ASSERT_TRUE(connection_->Execute("CREATE TABLE t (x)"));
    Statement add = connection_->Prepare("INSERT INTO t VALUES (?1)");
    const SString tenth('x', sqlite::kMostText / 10);
    for (int i = 0; i < 11; ++i) ASSERT_TRUE(Execution(add, tenth).Run());
    Statement read = connection_->Prepare("SELECT x FROM t");
    for (int time = 0; time < 2; ++time) {  // each execution has its own
        Execution query(read);
        for (int i = 0; i < 10; ++i) {
            ASSERT_EQ(query.Next(), Step::Row) << i;
            EXPECT_EQ(query.Text(0), tenth);
        }
        EXPECT_EQ(query.Next(), Step::Failed);
    }
    Statement read_all = connection_->Prepare("SELECT x FROM t", sqlite::kMostText * 2);
    Execution query(read_all);
    for (int i = 0; i < 11; ++i) {
        ASSERT_EQ(query.Next(), Step::Row) << i;
        EXPECT_EQ(query.Text(0), tenth);
    }
    EXPECT_EQ(query.Next(), Step::Done);
}

TEST_F(Sqlite, GivesUpAStatementOfEndlesslyManyEmptyTexts) {
    Statement endless = connection_->Prepare(
        "WITH RECURSIVE n(x) AS (VALUES ('') UNION ALL SELECT x FROM n) SELECT x FROM n");
    Execution query(endless);
    size_t count = 0;
    while (query.Next() == Step::Row) count += query.Text(0).IsEmpty() ? 1 : 0;
    EXPECT_GT(count, 500000U);
    EXPECT_LT(count, 2000000U);
}

TEST_F(Sqlite, GivesUpAStatementThatNeedsUnreasonablyMuchMemory) {
    ASSERT_TRUE(connection_->Execute("CREATE TABLE t (x); INSERT INTO t VALUES (1)"));
    SString doubled = "SELECT hex(zeroblob(4000000)) AS y FROM t";
    for (int i = 0; i < 7; ++i) doubled = doubled + " UNION ALL " + doubled;
    EXPECT_TRUE(connection_->Value("SELECT hex(zeroblob(4000000)) AS y FROM t ORDER BY y"));
    EXPECT_FALSE(connection_->Value(("SELECT y FROM (" + doubled + ") ORDER BY y").CString()));
    EXPECT_EQ(connection_->Value("SELECT x FROM t"), SString("1"));
}

TEST_F(Sqlite, GivesUpAStatementThatDoesNotEnd) {
    constexpr const char* kEndless =
        "WITH RECURSIVE n(x) AS (VALUES (1) UNION ALL SELECT x + 1 FROM n) SELECT count(*) FROM n";
    connection_->SetTimeLimit(std::chrono::milliseconds(50));
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(connection_->Value(kEndless));
    EXPECT_FALSE(connection_->Execute(kEndless));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
    EXPECT_EQ(connection_->Value("SELECT 1"), SString("1"));  // each statement has its own time
}

TEST_F(Sqlite, GivesTheBytesOfTheFile) {
    ASSERT_TRUE(connection_->Execute("CREATE TABLE t (x); INSERT INTO t VALUES (zeroblob(10000))"));
    const Transaction transaction(*connection_);
    EXPECT_EQ(connection_->Bytes(), MapFileRead(path_));
}

TEST_F(Sqlite, NoticesThatTheNameLeadsElsewhere) {
    ASSERT_TRUE(connection_->Execute("CREATE TABLE t (x)"));
    EXPECT_FALSE(connection_->HasMoved());
    ASSERT_TRUE(Rename(folder_.Write("other", ""), path_));
    EXPECT_TRUE(connection_->HasMoved());
}

TEST_F(Sqlite, TellsALockFromDamage) {
    const auto damaged = Connection::Open(folder_.Write("damaged", SString('x', 5000)), Mode::Shared);
    EXPECT_FALSE(damaged->Value("SELECT count(*) FROM sqlite_schema"));
    EXPECT_TRUE(damaged->IsDamaged());
    EXPECT_FALSE(damaged->IsLocked());
    const auto other = Open();
    ASSERT_TRUE(other->Execute("BEGIN EXCLUSIVE"));
    EXPECT_FALSE(connection_->Value("SELECT count(*) FROM sqlite_schema"));
    EXPECT_TRUE(connection_->IsLocked());
    EXPECT_FALSE(connection_->IsDamaged());
}

TEST_F(Sqlite, ImmutableReadsAndNeverWrites) {
    ASSERT_TRUE(connection_->Execute("CREATE TABLE t (x)"));
    const auto reader = Open(Mode::Immutable);
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(*reader->Value("SELECT count(*) FROM t"), "0");
    EXPECT_FALSE(reader->Execute("INSERT INTO t VALUES (1)"));
}

}  // namespace
