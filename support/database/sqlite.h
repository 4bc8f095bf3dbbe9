// SQLite 3 as owning handles: a connection, a prepared statement, one execution of it, a transaction. The
// only place that calls the library. Failure is in the result; nothing is printed and nothing is thrown.
//
// Files are taken for hostile: no trigger, view or virtual table of theirs is run and no function that may
// take hours, lengths and memory are limited, and a statement is given up when it has run for a minute or has
// given more text than expected of it.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "support/text/sstring.h"

struct sqlite3;
struct sqlite3_stmt;

namespace sqlite {

/// For how long another process's lock is waited for.
constexpr std::chrono::milliseconds kLockWait{5000};

enum class Step { Row, Done, Failed };

/// How much text one execution may give, in bytes; a value costs some for itself, too.
constexpr size_t kMostText = size_t{64} << 20;

class Connection;

/// A statement that is prepared when it is first executed and kept from then on.
class Statement {
  public:
    Statement(Connection& connection, const char* sql, size_t most_text)
        : connection_(&connection), sql_(sql), most_text_(most_text) {}

  private:
    friend class Execution;
    sqlite3_stmt* Prepared();
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };
    Connection* connection_;
    const char* sql_;
    size_t most_text_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// One execution of a statement, its parameters bound in order. The values are not copied and must outlive
/// it, so temporary strings do not compile.
class Execution {
  public:
    template <typename... Values>
    explicit Execution(Statement& statement, Values&&... values)
        : statement_(statement.Prepared()), text_left_(statement.most_text_) {
        int index = 0;
        (Bind(++index, std::forward<Values>(values)), ...);
    }
    ~Execution();
    Execution(const Execution&) = delete;
    Execution& operator=(const Execution&) = delete;

    /// Failed, too, after more text than the statement may give.
    Step Next();
    /// For a statement without result rows.
    bool Run() { return Next() == Step::Done; }
    SString Text(int column);
    int64_t Number(int column) const;
    bool IsNull(int column) const;

  private:
    void Bind(int index, const SString& value);
    void Bind(int index, SString&& value) = delete;
    void Bind(int index, int64_t value);
    sqlite3_stmt* statement_;  // null when it could not be prepared or bound
    size_t text_left_;
};

/// Shared: for reading, and for writing if the system allows it. Immutable: as a file that nobody changes,
/// without locks or files beside it.
enum class Mode { Shared, Immutable };

class Connection {
  public:
    /// An existing file; null when it cannot be opened. Locks of other processes are waited for up to 5 s.
    static std::unique_ptr<Connection> Open(const SString& path, Mode mode);
    /// A database's bytes, without a file; for reading.
    static std::unique_ptr<Connection> OpenCopy(const SString& bytes);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Runs statements without parameters, their result rows left aside.
    bool Execute(const char* sql);
    /// The first column of the first row; nothing on failure.
    std::optional<SString> Value(const char* sql);
    Statement Prepare(const char* sql, size_t most_text = kMostText) { return {*this, sql, most_text}; }
    /// For each statement from here on; a minute without it.
    void SetTimeLimit(std::chrono::milliseconds limit) { time_limit_ = limit; }
    int64_t LastId() const;
    /// Whether the last INSERT, UPDATE or DELETE changed a row.
    bool HasChanged() const;

    /// Whether the last call failed because another process holds a lock.
    bool IsLocked() const;
    /// Whether the last call failed because the file is no database, or a damaged one.
    bool IsDamaged() const;
    /// Whether the name no longer leads to the file that is open.
    bool HasMoved() const;
    /// The database's bytes, as a file of it would hold them. Reading the file itself would drop this
    /// process's locks on it when it is closed (POSIX).
    std::optional<SString> Bytes() const;

  private:
    friend class Statement;
    friend class Transaction;
    struct Close {
        void operator()(sqlite3* handle) const;
    };
    explicit Connection(sqlite3* handle) : handle_(handle) {}
    bool TakePrecautions();
    bool RefuseFunctions();
    void StartClock() { start_ = std::chrono::steady_clock::now(); }
    static int IsTimeOver(void* connection);
    bool IsInTransaction() const;
    std::string copy_;  // read as long as the handle is open
    std::unique_ptr<sqlite3, Close> handle_;
    std::chrono::steady_clock::time_point start_;
    std::chrono::milliseconds time_limit_ = std::chrono::minutes(1);
    Statement begin_reading_ = Prepare("BEGIN");
    Statement begin_writing_ = Prepare("BEGIN IMMEDIATE");
    Statement commit_ = Prepare("COMMIT");
    Statement rollback_ = Prepare("ROLLBACK");
};

/// Reading: everything is read as it stood at the first reading. Writing: takes the write lock.
enum class Access { Reading, Writing };

/// Rolls back with the scope unless Commit succeeded.
class Transaction {
  public:
    explicit Transaction(Connection& connection, Access access = Access::Writing);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    /// False if the lock could not be had, or the library gave the transaction up.
    bool IsOpen() const { return connection_.IsInTransaction(); }
    bool Commit();

  private:
    Connection& connection_;
};

}  // namespace sqlite
