#include "support/database/account_session.h"

#include "support/system/regular_file.h"

namespace {

// A write-ahead log makes a commit one write to one file, without waiting for the disk: it survives a killed
// process at once, and Sync makes it survive a power failure. Rows of an account stand together, accounts in
// the order of creation, so that a new account is appended; only the two look-up indexes are scattered.
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

// A database that somebody has put in the file's place since (from a backup, say) must not be missed: what
// is written into a file without a name is lost.
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
