#include "support/database/sqlite.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <algorithm>
#include <initializer_list>

namespace sqlite {

namespace {

/// Whoever may write in the directory could put a pipe there, for whose other end SQLite would wait.
bool HasPlainJournals(const SString& path) {
    return std::ranges::all_of(std::initializer_list<const char*>{"-journal", "-wal", "-shm"},
                               [&](const char* suffix) {
                                   struct stat status {};
                                   const bool is_there = lstat((path + suffix).CString(), &status) == 0;
                                   return !is_there || S_ISREG(status.st_mode);
                               });
}

// A truncated file that is mapped would end the program (SIGBUS). Temporary files would land where root's
// environment says. A damaged page must not make SQLite read past it.
constexpr const char* kPrecautions =
    "PRAGMA mmap_size = 0; PRAGMA temp_store = MEMORY; PRAGMA cell_size_check = ON";

// For all connections: what a file's own expressions and indexes have SQLite itself hold or sort.
constexpr sqlite3_int64 kMostMemory = 128 << 20;

constexpr size_t kValueCost = 64;  // what a list spends on an empty one

constexpr int kInstructionsBetweenLooks = 10000;  // well below a millisecond

// What a file's own schema could have the program run.
constexpr struct {
    int option;
    int value;
} kOptions[] = {
    {SQLITE_DBCONFIG_DEFENSIVE, 1},      {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
    {SQLITE_DBCONFIG_ENABLE_TRIGGER, 0}, {SQLITE_DBCONFIG_ENABLE_VIEW, 0},
    {SQLITE_DBCONFIG_DQS_DDL, 0},        {SQLITE_DBCONFIG_DQS_DML, 0},
};

constexpr struct {
    int limit;
    int value;
} kLimits[] = {
    {SQLITE_LIMIT_LENGTH, 16 << 20},  // of a value, and of a row
    {SQLITE_LIMIT_SQL_LENGTH, 100000},      {SQLITE_LIMIT_COLUMN, 100},
    {SQLITE_LIMIT_EXPR_DEPTH, 20},          {SQLITE_LIMIT_VDBE_OP, 25000},
    {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 50}, {SQLITE_LIMIT_ATTACHED, 0},
    {SQLITE_LIMIT_TRIGGER_DEPTH, 1},
};

// A generated column or an index of the file's may call them. One call's time grows with the product of its
// texts' lengths, which is hours, and the clock is looked at between instructions only.
constexpr const char* kSlowFunctions[] = {"instr", "replace", "trim", "ltrim", "rtrim", "json_patch"};

// Declared as harmless as SQLite's own, or the rest of a schema that names them could not be read, either.
constexpr int kAsTheirs = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;

void Refuse(sqlite3_context* context, int /*count*/, sqlite3_value** /*values*/) {
    sqlite3_result_error(context, "refused", -1);
}

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
    connection_->StartClock();
    if (!statement_) {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v3(connection_->handle_.get(), sql_, -1, SQLITE_PREPARE_PERSISTENT, &statement,
                           nullptr);
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
    const int code = statement_ == nullptr || text_left_ == 0 ? SQLITE_ERROR : sqlite3_step(statement_);
    return code == SQLITE_ROW ? Step::Row : code == SQLITE_DONE ? Step::Done : Step::Failed;
}

SString Execution::Text(int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    const auto length = static_cast<size_t>(sqlite3_column_bytes(statement_, column));
    text_left_ -= std::min(text_left_, length + kValueCost);
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
    if (!immutable && !HasPlainJournals(path)) return nullptr;
    const SString uri = FileUri(path) + (immutable ? "?immutable=1" : "");
    const int flags =
        SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX | (immutable ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(uri.CString(), &handle, flags, nullptr);
    std::unique_ptr<Connection> connection(new Connection(handle));  // must be closed even after a failure
    if (code != SQLITE_OK) return nullptr;
    sqlite3_busy_timeout(handle, static_cast<int>(kLockWait.count()));
    return connection->TakePrecautions() ? std::move(connection) : nullptr;
}

std::unique_ptr<Connection> Connection::OpenCopy(const SString& bytes) {
    auto connection = Open(":memory:", Mode::Shared);
    if (!connection) return nullptr;
    connection->copy_ = bytes.Bytes();
    auto* data = reinterpret_cast<unsigned char*>(connection->copy_.data());
    const auto size = static_cast<sqlite3_int64>(connection->copy_.size());
    const int code =
        sqlite3_deserialize(connection->handle_.get(), "main", data, size, size, SQLITE_DESERIALIZE_READONLY);
    return code == SQLITE_OK ? std::move(connection) : nullptr;
}

// Virtual tables cannot be switched off; without modules none can be used.
bool Connection::TakePrecautions() {
    sqlite3* handle = handle_.get();
    sqlite3_hard_heap_limit64(kMostMemory);
    for (const auto& [option, value] : kOptions) {
        if (sqlite3_db_config(handle, option, value, nullptr) != SQLITE_OK) return false;
    }
    for (const auto& [limit, value] : kLimits) sqlite3_limit(handle, limit, value);
    sqlite3_progress_handler(handle, kInstructionsBetweenLooks, IsTimeOver, this);
    return sqlite3_drop_modules(handle, nullptr) == SQLITE_OK && Execute(kPrecautions) && RefuseFunctions();
}

bool Connection::RefuseFunctions() {
    return std::ranges::all_of(kSlowFunctions, [&](const char* name) {
        return sqlite3_create_function_v2(handle_.get(), name, -1, kAsTheirs, nullptr, Refuse, nullptr,
                                          nullptr, nullptr) == SQLITE_OK;
    });
}

int Connection::IsTimeOver(void* connection) {
    const auto* self = static_cast<const Connection*>(connection);
    return std::chrono::steady_clock::now() - self->start_ >= self->time_limit_ ? 1 : 0;
}

bool Connection::Execute(const char* sql) {
    StartClock();
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

bool Connection::IsLocked() const {
    return sqlite3_errcode(handle_.get()) == SQLITE_BUSY;
}

bool Connection::IsDamaged() const {
    const int code = sqlite3_errcode(handle_.get());
    return code == SQLITE_NOTADB || code == SQLITE_CORRUPT;
}

bool Connection::HasMoved() const {
    int has_moved = 0;
    sqlite3_file_control(handle_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &has_moved);
    return has_moved != 0;
}

std::optional<SString> Connection::Bytes() const {
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, void (*)(void*)> bytes(
        sqlite3_serialize(handle_.get(), "main", &size, 0), sqlite3_free);
    if (!bytes) return std::nullopt;
    return SString(std::string(reinterpret_cast<const char*>(bytes.get()), static_cast<size_t>(size)));
}

bool Connection::IsInTransaction() const {
    return sqlite3_get_autocommit(handle_.get()) == 0;
}

Transaction::Transaction(Connection& connection, Access access) : connection_(connection) {
    Execution(access == Access::Reading ? connection_.begin_reading_ : connection_.begin_writing_).Run();
}

// A failed commit leaves the transaction open.
Transaction::~Transaction() {
    if (IsOpen()) Execution(connection_.rollback_).Run();
}

bool Transaction::Commit() {
    return IsOpen() && Execution(connection_.commit_).Run();
}

}  // namespace sqlite
