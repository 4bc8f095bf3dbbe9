// Opens the account database and notices that its file was replaced.
#include "support/database/account_session.h"

#include "support/system/regular_file.h"

namespace {

// With a write-ahead log a commit survives a killed process without waiting for the disk, and after Sync a
// power failure. Rows are appended in the order of creation (docs/storage.md).
constexpr DatabaseFormat kFormat = {
    "1414680129",  // "TRNA"
    "CREATE TABLE accounts (id INTEGER PRIMARY KEY, uid TEXT NOT NULL UNIQUE,"
    "  locked INTEGER NOT NULL DEFAULT 0);"
    "CREATE TABLE fields (account INTEGER NOT NULL, name TEXT NOT NULL, position INTEGER NOT NULL,"
    "  value TEXT NOT NULL, PRIMARY KEY (account, name, position)) WITHOUT ROWID;"
    "CREATE TABLE addresses (address TEXT NOT NULL, account INTEGER NOT NULL,"
    "  PRIMARY KEY (address, account)) WITHOUT ROWID;",
    "WAL",
    "NORMAL",
};

SString Path() {
    return DatabasePath("MTA-Accounts");
}

}  // namespace

AccountStore::Session::Session(OpenedDatabase database, const SString& file, bool for_writing)
    : path(file),
      is_writable(for_writing),
      is_snapshot(database.is_snapshot),
      connection(std::move(database.connection)) {
    stat(path.CString(), &opened);
}

// Writes to a file that a restored backup has replaced would be lost.
bool AccountStore::Session::IsCurrent() const {
    struct stat now {};
    return !is_snapshot && path == Path() && stat(path.CString(), &now) == 0 && IsSameFile(now, opened);
}

DatabaseState AccountStore::Session::Open(bool for_writing, std::unique_ptr<Session>* session) {
    const SString path = Path();
    OpenedDatabase database = for_writing ? OpenForWriting(path, kFormat) : OpenForReading(path, kFormat);
    const DatabaseState state = database.state;
    if (state == DatabaseState::Ready) {
        *session = std::make_unique<Session>(std::move(database), path, for_writing);
    }
    return state;
}
