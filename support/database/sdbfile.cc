// Implements tables and values.
#include "support/database/sdbfile.h"

#include <cstdint>

#include "support/database/sdbfile_state.h"
#include "support/system/file.h"

using sqlite::Step;

SString NormalTablePath(const SString& table_path) {
    return "/" + table_path.S("^/+|/+$", "", "g").S("/+", "/", "g");
}

Sdbfile::Sdbfile() : state_(std::make_unique<State>()) {}

Sdbfile::Sdbfile(const SString& database, int flag) : Sdbfile() {
    Init(database, flag);
}

Sdbfile::~Sdbfile() = default;

void Sdbfile::Init(const SString& database, int /*flag*/) {
    CloseDB();
    state_->name = database;
}

void Sdbfile::CloseDB() {
    state_->hold.reset();
    state_->connection.reset();
    state_->is_open = state_->writable = state_->missing = false;
}

namespace {

Step FindTable(sqlite::Connection& connection, const SString& table) {
    sqlite::Statement statement = connection.Prepare("SELECT 1 FROM tables WHERE path = ?1");
    return sqlite::Execution(statement, table).Next();
}

bool MakeTable(sqlite::Connection& connection, const SString& table) {
    sqlite::Statement statement =
        connection.Prepare("INSERT INTO tables (path) VALUES (?1) ON CONFLICT DO NOTHING");
    return sqlite::Execution(statement, table).Run();
}

bool RemoveValues(sqlite::Connection& connection, const SString& table, const SString& key) {
    sqlite::Statement statement = connection.Prepare("DELETE FROM settings WHERE path = ?1 AND key = ?2");
    return sqlite::Execution(statement, table, key).Run();
}

bool AddValues(sqlite::Connection& connection, const SString& table, const SString& key,
               const SStringList& values) {
    sqlite::Statement statement =
        connection.Prepare("INSERT INTO settings (path, key, position, value) VALUES (?1, ?2, ?3, ?4)");
    int64_t position = 0;
    for (const SString& value : values) {
        if (!sqlite::Execution(statement, table, key, position++, value).Run()) return false;
    }
    return true;
}

}  // namespace

int Sdbfile::Open(const SString& table_path, int writable) {
    if (!state_->hold) CloseDB();
    state_->table = NormalTablePath(table_path);
    state_->is_open = (state_->hold ? OpenHeld(writable) : OpenTable(writable)) != 0;
    return state_->is_open;
}

int Sdbfile::OpenTable(int writable) {
    state_->writable = writable != 0;
    const SString path = DatabasePath(state_->name);
    const OpenedDatabase database =
        state_->writable ? OpenForWriting(path, kModuleFormat) : OpenForReading(path, kModuleFormat);
    if (database.state != DatabaseState::Ready) {
        state_->missing = database.state == DatabaseState::Missing;
        return 0;
    }
    const Step table = FindTable(*database.connection, state_->table);
    if (table == Step::Done && state_->writable) return MakeTable(*database.connection, state_->table);
    state_->missing = table == Step::Done;
    return table == Step::Row;
}

int Sdbfile::OpenHeld(int writable) {
    if (writable != 0) return 0;
    const Step table = FindTable(*state_->connection, state_->table);
    state_->missing = table == Step::Done;
    return table == Step::Row;
}

bool Sdbfile::IsMissing() const {
    return state_->missing;
}

SStringList Sdbfile::Get(const SString& key) const {
    SStringList values;
    return Read(key, &values) ? values : SStringList();
}

namespace {

bool ReadValues(sqlite::Connection& connection, const SString& table, const SString& key,
                SStringList* values) {
    sqlite::Statement statement =
        connection.Prepare("SELECT value FROM settings WHERE path = ?1 AND key = ?2 ORDER BY position");
    sqlite::Execution query(statement, table, key);
    Step step = query.Next();
    for (; step == Step::Row; step = query.Next()) values->Push(query.Text(0));
    return step == Step::Done;
}

}  // namespace

bool Sdbfile::Read(const SString& key, SStringList* values) const {
    values->Reset();
    if (!state_->is_open) return false;
    if (state_->hold) return ReadValues(*state_->connection, state_->table, key, values);
    const OpenedDatabase database = OpenForReading(DatabasePath(state_->name), kModuleFormat);
    return database.state == DatabaseState::Ready &&
           ReadValues(*database.connection, state_->table, key, values);
}

namespace {

/// Null if there is none or it cannot be written; none is made.
std::unique_ptr<sqlite::Connection> OpenToStore(const SString& path) {
    return EntryExists(path) ? OpenForWriting(path, kModuleFormat).connection : nullptr;
}

// While the lock was waited for, its holder may have replaced the file.
bool IsInService(const sqlite::Transaction& transaction, const sqlite::Connection& connection) {
    return transaction.IsOpen() && !connection.HasMoved();
}

// The table is made, too: the file may be another one than that which was opened first.
bool ReplaceValues(sqlite::Connection& connection, const SString& table, const SString& key,
                   const SStringList& values) {
    return MakeTable(connection, table) && RemoveValues(connection, table, key) &&
           AddValues(connection, table, key, values);
}

}  // namespace

int Sdbfile::Set(const SString& key, const SStringList& values) {
    if (!state_->is_open || !state_->writable) return 0;
    const auto connection = OpenToStore(DatabasePath(state_->name));
    if (!connection) return 0;
    sqlite::Transaction transaction(*connection);
    return IsInService(transaction, *connection) && ReplaceValues(*connection, state_->table, key, values) &&
           transaction.Commit();
}

// Looks only when it has the write lock: a reader does not see what another process has yet to commit.
Sdbfile::Outcome Sdbfile::SetIf(const SString& key, const SStringList& expected, const SStringList& values,
                                SStringList* found) {
    found->Reset();
    if (!state_->is_open || !state_->writable) return Outcome::Failed;
    const auto connection = OpenToStore(DatabasePath(state_->name));
    if (!connection) return Outcome::Failed;
    sqlite::Transaction transaction(*connection);
    const bool is_read =
        IsInService(transaction, *connection) && ReadValues(*connection, state_->table, key, found);
    if (!is_read) return Outcome::Failed;
    if (*found != expected) return Outcome::Differs;
    const bool is_set = ReplaceValues(*connection, state_->table, key, values) && transaction.Commit();
    return is_set ? Outcome::Set : Outcome::Failed;
}
