// SQLite 3 as owning handles: a connection, a prepared statement, one execution of it, a transaction. The
// only place that calls the library. Failure is in the result; nothing is printed and nothing is thrown.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "support/text/sstring.h"

struct sqlite3;
struct sqlite3_stmt;

namespace sqlite {

enum class Step { Row, Done, Failed };

/// A statement that is prepared when it is first executed and kept from then on.
class Statement {
  public:
    Statement(sqlite3* connection, const char* sql) : connection_(connection), sql_(sql) {}

  private:
    friend class Execution;
    sqlite3_stmt* Prepared();
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };
    sqlite3* connection_;
    const char* sql_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// One execution of a statement, its parameters bound in order. The values are not copied and must outlive
/// it, so temporary strings do not compile.
class Execution {
  public:
    template <typename... Values>
    explicit Execution(Statement& statement, Values&&... values) : statement_(statement.Prepared()) {
        int index = 0;
        (Bind(++index, std::forward<Values>(values)), ...);
    }
    ~Execution();
    Execution(const Execution&) = delete;
    Execution& operator=(const Execution&) = delete;

    Step Next();
    /// For a statement without result rows.
    bool Run() { return Next() == Step::Done; }
    SString Text(int column) const;
    int64_t Number(int column) const;
    bool IsNull(int column) const;

  private:
    void Bind(int index, const SString& value);
    void Bind(int index, SString&& value) = delete;
    void Bind(int index, int64_t value);
    sqlite3_stmt* statement_;  // null when it could not be prepared or bound
};

/// Shared: for reading, and for writing if the system allows it. Immutable: as a file that nobody changes,
/// without locks or files beside it.
enum class Mode { Shared, Immutable };

class Connection {
  public:
    /// An existing file; null when it cannot be opened. Locks of other processes are waited for up to 5 s.
    static std::unique_ptr<Connection> Open(const SString& path, Mode mode);

    /// Runs statements without parameters, their result rows left aside.
    bool Execute(const char* sql);
    /// The first column of the first row; nothing on failure.
    std::optional<SString> Value(const char* sql);
    Statement Prepare(const char* sql) { return {handle_.get(), sql}; }
    int64_t LastId() const;
    /// Whether the last INSERT, UPDATE or DELETE changed a row.
    bool HasChanged() const;

  private:
    friend class Transaction;
    struct Close {
        void operator()(sqlite3* handle) const;
    };
    explicit Connection(sqlite3* handle) : handle_(handle) {}
    bool IsInTransaction() const;
    std::unique_ptr<sqlite3, Close> handle_;
    Statement begin_ = Prepare("BEGIN IMMEDIATE");
    Statement commit_ = Prepare("COMMIT");
    Statement rollback_ = Prepare("ROLLBACK");
};

/// Takes the write lock, and rolls back with the scope unless Commit succeeded.
class Transaction {
  public:
    explicit Transaction(Connection& connection);
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
