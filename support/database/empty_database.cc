#include "support/database/empty_database.h"

#include "support/database/account_session.h"
#include "support/database/sdbfile_state.h"
#include "support/system/descriptor.h"
#include "support/system/file.h"

namespace {

constexpr const char* kNothing = "0";

/// "0" if nothing is stored; nothing if it cannot be told, or is no database of ours.
std::optional<SString> Contents(sqlite::Connection& connection) {
    const auto id = connection.Value("PRAGMA application_id");
    if (id == kAccountFormat.application_id)
        return connection.Value("SELECT EXISTS (SELECT 1 FROM accounts)");
    if (id == kModuleFormat.application_id) {
        return connection.Value("SELECT EXISTS (SELECT 1 FROM settings)");
    }
    return connection.Value("SELECT count(*) FROM sqlite_schema");  // one that was not made to the end
}

std::unique_ptr<sqlite::Connection> Open(const SString& path) {
    return IsRegular(path) ? sqlite::Connection::Open(path, sqlite::Mode::Shared) : nullptr;
}

/// Without its log first, which would stay behind: a database that has lost its name is closed without it.
Removal Remove(sqlite::Connection& connection, const SString& path) {
    if (connection.Value("PRAGMA journal_mode = DELETE") != "delete") return Removal::Failed;
    const sqlite::Transaction lock(connection);
    if (!lock.IsOpen() || connection.HasMoved()) return Removal::Failed;
    if (Contents(connection) != kNothing) return Removal::NotEmpty;
    return RemoveFile(path) && SyncParent(path) ? Removal::Removed : Removal::Failed;
}

Removal RemoveTable(sqlite::Connection& connection, const SString& table) {
    sqlite::Transaction transaction(connection);
    if (!transaction.IsOpen()) return Removal::Failed;
    sqlite::Statement find = connection.Prepare("SELECT 1 FROM settings WHERE path = ?1 LIMIT 1");
    const sqlite::Step setting = sqlite::Execution(find, table).Next();
    if (setting == sqlite::Step::Row) return Removal::NotEmpty;
    sqlite::Statement remove = connection.Prepare("DELETE FROM tables WHERE path = ?1");
    const bool is_removed = setting == sqlite::Step::Done && sqlite::Execution(remove, table).Run();
    return is_removed && transaction.Commit() ? Removal::Removed : Removal::Failed;
}

}  // namespace

Removal RemoveEmptyTable(const SString& database, const SString& table_path) {
    const SString path = DatabasePath(database);
    if (!path.IsEmpty() && !EntryExists(path)) return Removal::Removed;
    const OpenedDatabase opened = OpenForWriting(path, kModuleFormat);
    if (opened.state == DatabaseState::Foreign) return Removal::NotEmpty;
    if (opened.state != DatabaseState::Ready) return Removal::Failed;
    return RemoveTable(*opened.connection, NormalTablePath(table_path));
}

Removal RemoveEmptyDatabase(const SString& database) {
    const SString path = DatabasePath(database);
    if (!path.IsEmpty() && !EntryExists(path)) return Removal::Removed;
    const auto connection = Open(path);
    if (!connection) return Removal::Failed;
    // Looked at first: one that is in use keeps its log.
    const auto contents = Contents(*connection);
    if (!contents) return connection->IsDamaged() ? Removal::NotEmpty : Removal::Failed;
    return *contents == kNothing ? Remove(*connection, path) : Removal::NotEmpty;
}

bool IsEmptyDatabase(const SString& database) {
    const auto connection = Open(DatabasePath(database));
    return connection && Contents(*connection) == kNothing;
}
