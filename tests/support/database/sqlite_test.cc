#include "support/database/sqlite.h"

#include <gtest/gtest.h>

#include <cstdint>

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

TEST_F(Sqlite, ImmutableReadsAndNeverWrites) {
    ASSERT_TRUE(connection_->Execute("CREATE TABLE t (x)"));
    const auto reader = Open(Mode::Immutable);
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(*reader->Value("SELECT count(*) FROM t"), "0");
    EXPECT_FALSE(reader->Execute("INSERT INTO t VALUES (1)"));
}

}  // namespace
