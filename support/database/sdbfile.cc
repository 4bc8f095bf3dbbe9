#include "support/database/sdbfile.h"

#include <fcntl.h>

#include <cstdint>

#include "support/database/database_file.h"
#include "support/system/file.h"
#include "support/system/regular_file.h"

using sqlite::Step;

namespace {

// A rollback journal exists only during a write, so the file can be renamed. EXTRA also syncs the directory
// after removing the journal; otherwise a power failure could undo what was stored.
constexpr DatabaseFormat kFormat = {
    "1414680141",  // "TRNM"
    "CREATE TABLE tables (path TEXT PRIMARY KEY) WITHOUT ROWID;"
    "CREATE TABLE settings (path TEXT NOT NULL, key TEXT NOT NULL, position INTEGER NOT NULL,"
    "  value TEXT NOT NULL, PRIMARY KEY (path, key, position)) WITHOUT ROWID;",
    "DELETE",
    "EXTRA",
};

// "/a/b", whatever slashes the path was written with; "/" for the outermost table.
SString Normal(const SString& table_path) {
    return "/" + table_path.S("^/+|/+$", "", "g").S("/+", "/", "g");
}

}  // namespace

struct Sdbfile::State {
    SString name;
    SString table;
    bool writable = false;
    bool missing = false;
    std::unique_ptr<sqlite::Connection> connection;
    std::optional<sqlite::Transaction> hold;
};

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
    state_->writable = state_->missing = false;
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
    state_->table = Normal(table_path);
    if (state_->hold) return writable == 0 ? OpenHeld() : 0;
    CloseDB();
    state_->writable = writable != 0;
    const SString path = DatabasePath(state_->name);
    OpenedDatabase database =
        state_->writable ? OpenForWriting(path, kFormat) : OpenForReading(path, kFormat);
    Step table = database.state == DatabaseState::Ready ? FindTable(*database.connection, state_->table)
                                                        : Step::Failed;
    if (table == Step::Done && state_->writable && MakeTable(*database.connection, state_->table)) {
        table = Step::Row;
    }
    state_->missing = database.state == DatabaseState::Missing || table == Step::Done;
    if (table == Step::Row) state_->connection = std::move(database.connection);
    return table == Step::Row;
}

int Sdbfile::OpenHeld() {
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

bool Sdbfile::Read(const SString& key, SStringList* values) const {
    values->Reset();
    if (!state_->connection) return false;
    sqlite::Statement statement = state_->connection->Prepare(
        "SELECT value FROM settings WHERE path = ?1 AND key = ?2 ORDER BY position");
    sqlite::Execution query(statement, state_->table, key);
    Step step = query.Next();
    for (; step == Step::Row; step = query.Next()) values->Push(query.Text(0));
    return step == Step::Done;
}

int Sdbfile::Set(const SString& key, const SStringList& values) {
    if (!state_->connection || !state_->writable) return 0;
    sqlite::Connection& connection = *state_->connection;
    sqlite::Transaction transaction(connection);
    return transaction.IsOpen() && RemoveValues(connection, state_->table, key) &&
           AddValues(connection, state_->table, key, values) && transaction.Commit();
}

namespace {

/// A transaction that changes nothing.
bool Rewrite(sqlite::Connection& connection) {
    const SString mark = SString("PRAGMA application_id = ") + kFormat.application_id;
    return connection.Execute(mark.CString());
}

bool HasSomethingBeside(const SString& path) {
    return EntryExists(path + "-journal") || EntryExists(path + "-wal");
}

}  // namespace

Sdbfile::Holding Sdbfile::TryToHold() {
    CloseDB();
    const SString path = DatabasePath(state_->name);
    if (!EntryExists(path)) return Holding::NotNeeded;
    OpenedDatabase database{DatabaseState::Foreign, nullptr};
    if (MayWriteDatabase(path)) database = OpenForWriting(path, kFormat);
    if (database.state == DatabaseState::Foreign) {
        return HasSomethingBeside(path) ? Holding::Refused : Holding::NotNeeded;
    }
    if (database.state != DatabaseState::Ready) return Holding::Refused;
    state_->connection = std::move(database.connection);
    state_->hold.emplace(*state_->connection);
    if (!state_->hold->IsOpen()) return Holding::Refused;
    if (state_->connection->HasMoved()) return Holding::Again;
    if (!HasSomethingBeside(path)) return Holding::Held;
    state_->hold.reset();  // its end would remove only a journal of its own
    return Rewrite(*state_->connection) ? Holding::Again : Holding::Refused;
}

bool Sdbfile::Hold() {
    const auto end = std::chrono::steady_clock::now() + sqlite::kLockWait;
    Holding holding = TryToHold();
    while (holding == Holding::Again && std::chrono::steady_clock::now() < end) holding = TryToHold();
    if (holding == Holding::Held) return true;
    CloseDB();
    return holding == Holding::NotNeeded;
}

std::optional<SString> Sdbfile::Bytes() const {
    if (state_->hold) return state_->connection->Bytes();
    const RegularFile file = OpenRegularFile(DatabasePath(state_->name), O_RDONLY, Links::NotAtEnd);
    return file ? file.descriptor.ReadAll() : std::nullopt;
}

bool SettleDatabase(const SString& database) {
    const SString path = DatabasePath(database);
    if (path.IsEmpty() || !HasSomethingBeside(path)) return !path.IsEmpty();
    // Opening works off a journal with contents; an empty one only goes with the next transaction.
    const OpenedDatabase opened = OpenForWriting(path, kFormat);
    return opened.state == DatabaseState::Ready &&
           (!HasSomethingBeside(path) || Rewrite(*opened.connection)) && !HasSomethingBeside(path);
}
