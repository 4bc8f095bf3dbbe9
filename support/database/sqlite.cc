#include "support/database/sqlite.h"

#include <sqlite3.h>

namespace sqlite {

namespace {

constexpr int kLockWait = 5000;  // milliseconds

// A truncated file that is mapped would end the program (SIGBUS). Temporary files would land where root's
// environment says. A hostile schema must not call functions, nor a damaged page make SQLite read past it.
constexpr const char* kPrecautions =
    "PRAGMA mmap_size = 0; PRAGMA temp_store = MEMORY; PRAGMA trusted_schema = OFF; "
    "PRAGMA cell_size_check = ON";

bool IsPlainInUri(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/' ||
           c == '.' || c == '-' || c == '_';
}

// RFC 8089: "file:/a%20b".
SString FileUri(const SString& path) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string uri = "file:";
    for (const char c : path.Bytes()) {
        const auto byte = static_cast<unsigned char>(c);
        if (IsPlainInUri(c)) {
            uri += c;
        } else {
            (uri += '%') += {kDigits[byte >> 4], kDigits[byte & 15]};
        }
    }
    return uri;
}

}  // namespace

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

sqlite3_stmt* Statement::Prepared() {
    if (!statement_) {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v3(connection_, sql_, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
        statement_.reset(statement);
    }
    return statement_.get();
}

Execution::~Execution() {
    if (statement_ != nullptr) sqlite3_reset(statement_);
}

void Execution::Bind(int index, const SString& value) {
    const std::string& bytes = value.Bytes();
    if (statement_ != nullptr && sqlite3_bind_text64(statement_, index, bytes.data(), bytes.size(),
                                                     SQLITE_STATIC, SQLITE_UTF8) != SQLITE_OK) {
        statement_ = nullptr;
    }
}

void Execution::Bind(int index, int64_t value) {
    if (statement_ != nullptr && sqlite3_bind_int64(statement_, index, value) != SQLITE_OK) {
        statement_ = nullptr;
    }
}

Step Execution::Next() {
    const int code = statement_ == nullptr ? SQLITE_ERROR : sqlite3_step(statement_);
    return code == SQLITE_ROW ? Step::Row : code == SQLITE_DONE ? Step::Done : Step::Failed;
}

SString Execution::Text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    const auto length = static_cast<size_t>(sqlite3_column_bytes(statement_, column));
    return text == nullptr ? SString() : SString(std::string_view(text, length));
}

int64_t Execution::Number(int column) const {
    return sqlite3_column_int64(statement_, column);
}

bool Execution::IsNull(int column) const {
    return sqlite3_column_type(statement_, column) == SQLITE_NULL;
}

void Connection::Close::operator()(sqlite3* handle) const {
    sqlite3_close_v2(handle);
}

std::unique_ptr<Connection> Connection::Open(const SString& path, Mode mode) {
    const bool immutable = mode == Mode::Immutable;
    const SString uri = FileUri(path) + (immutable ? "?immutable=1" : "");
    const int flags =
        SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX | (immutable ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(uri.CString(), &handle, flags, nullptr);
    std::unique_ptr<Connection> connection(new Connection(handle));  // must be closed even after a failure
    if (code != SQLITE_OK) return nullptr;
    sqlite3_busy_timeout(handle, kLockWait);
    return connection->Execute(kPrecautions) ? std::move(connection) : nullptr;
}

bool Connection::Execute(const char* sql) {
    return sqlite3_exec(handle_.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::optional<SString> Connection::Value(const char* sql) {
    Statement statement = Prepare(sql);
    Execution query(statement);
    return query.Next() == Step::Row ? std::optional(query.Text(0)) : std::nullopt;
}

int64_t Connection::LastId() const {
    return sqlite3_last_insert_rowid(handle_.get());
}

bool Connection::HasChanged() const {
    return sqlite3_changes(handle_.get()) > 0;
}

bool Connection::IsInTransaction() const {
    return sqlite3_get_autocommit(handle_.get()) == 0;
}

Transaction::Transaction(Connection& connection) : connection_(connection) {
    Execution(connection_.begin_).Run();
}

// A failed commit leaves the transaction open.
Transaction::~Transaction() {
    if (IsOpen()) Execution(connection_.rollback_).Run();
}

bool Transaction::Commit() {
    return IsOpen() && Execution(connection_.commit_).Run();
}

}  // namespace sqlite
