// The account store's open database and prepared statements.
#pragma once

#include <sys/stat.h>

#include <cstdint>

#include "support/database/account_store.h"

// With a write-ahead log a commit survives a killed process without waiting for the disk, and after Sync a
// power failure. Rows are appended in the order of creation (docs/storage.md).
inline constexpr DatabaseFormat kAccountFormat = {
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

struct AccountStore::Session {
    /// Of a list with a value or more of every account: enough for three million accounts.
    static constexpr size_t kMostTextOfAll = size_t{1} << 30;

    Session(OpenedDatabase database, const SString& file, bool for_writing);
    static DatabaseState Open(bool for_writing, std::unique_ptr<Session>* session);
    /// Whether the open file is still the account database.
    bool IsCurrent() const;

    SString path;
    bool is_writable;
    bool is_snapshot;
    struct stat opened {};
    std::unique_ptr<sqlite::Connection> connection;
    std::optional<int64_t> data_version;  // changes once another connection has written

    sqlite::Statement version = connection->Prepare("PRAGMA data_version");
    sqlite::Statement find = connection->Prepare("SELECT id FROM accounts WHERE uid = ?1");
    sqlite::Statement read = connection->Prepare(
        "SELECT a.locked, f.name, f.value FROM accounts a LEFT JOIN fields f ON f.account = a.id"
        " WHERE a.uid = ?1 ORDER BY f.name, f.position");
    sqlite::Statement find_owner = connection->Prepare(
        "SELECT a.uid FROM addresses d JOIN accounts a ON a.id = d.account"
        " WHERE d.address = ?1 ORDER BY d.account LIMIT 1");
    sqlite::Statement uids = connection->Prepare("SELECT uid FROM accounts ORDER BY id", kMostTextOfAll);
    sqlite::Statement count = connection->Prepare("SELECT count(*) FROM accounts");
    sqlite::Statement addresses = connection->Prepare("SELECT address FROM addresses", kMostTextOfAll);

    sqlite::Statement add =
        connection->Prepare("INSERT INTO accounts (uid) VALUES (?1) ON CONFLICT DO NOTHING");
    sqlite::Statement holds = connection->Prepare("SELECT 1 FROM accounts WHERE id = ?1 AND uid = ?2");
    sqlite::Statement lock = connection->Prepare("UPDATE accounts SET locked = 1 WHERE id = ?1 AND uid = ?2");
    sqlite::Statement remove = connection->Prepare("DELETE FROM accounts WHERE id = ?1");
    sqlite::Statement add_value =
        connection->Prepare("INSERT INTO fields (account, name, position, value) VALUES (?1, ?2, ?3, ?4)");
    sqlite::Statement values =
        connection->Prepare("SELECT value FROM fields WHERE account = ?1 AND name = ?2");
    sqlite::Statement remove_field =
        connection->Prepare("DELETE FROM fields WHERE account = ?1 AND name = ?2");
    sqlite::Statement remove_fields = connection->Prepare("DELETE FROM fields WHERE account = ?1");
    sqlite::Statement add_address = connection->Prepare(
        "INSERT INTO addresses (address, account) VALUES (?1, ?2) ON CONFLICT DO NOTHING");
    sqlite::Statement remove_address =
        connection->Prepare("DELETE FROM addresses WHERE address = ?1 AND account = ?2");
};
