// Copies the rows of an account database in one transaction.
#include "bench/bare_rows.h"

#include <fstream>
#include <limits>

#include "support/database/sqlite.h"

using sqlite::Execution;
using sqlite::Statement;
using sqlite::Step;

namespace {

// The schema of docs/storage.md.
constexpr const char* kSchema =
    "CREATE TABLE accounts (id INTEGER PRIMARY KEY, uid TEXT NOT NULL UNIQUE,"
    " locked INTEGER NOT NULL DEFAULT 0);"
    "CREATE TABLE fields (account INTEGER NOT NULL, name TEXT NOT NULL, position INTEGER NOT NULL,"
    " value TEXT NOT NULL, PRIMARY KEY (account, name, position)) WITHOUT ROWID;"
    "CREATE TABLE addresses (address TEXT NOT NULL, account INTEGER NOT NULL,"
    " PRIMARY KEY (address, account)) WITHOUT ROWID;";

template <typename Visit>
void ForEach(sqlite::Connection* connection, const char* sql, const Visit& visit) {
    Statement statement = connection->Prepare(sql, std::numeric_limits<size_t>::max());
    Execution query(statement);
    while (query.Next() == Step::Row) visit(query);
}

}  // namespace

// A measurement deletes nothing, so ids run from 1 without gaps.
std::vector<AccountRows> ReadRows(const SString& database) {
    std::vector<AccountRows> accounts;
    const auto connection = sqlite::Connection::Open(database, sqlite::Mode::Shared);
    if (!connection) return accounts;
    const auto account = [&](Execution& row) -> AccountRows& {
        return accounts[static_cast<size_t>(row.Number(0)) - 1];
    };
    ForEach(connection.get(), "SELECT uid FROM accounts ORDER BY id", [&](Execution& row) {
        accounts.push_back({row.Text(0), {}, {}});
    });
    ForEach(connection.get(), "SELECT account, name, position, value FROM fields", [&](Execution& row) {
        account(row).fields.push_back({row.Text(1), row.Number(2), row.Text(3)});
    });
    ForEach(connection.get(), "SELECT account, address FROM addresses",
            [&](Execution& row) { account(row).addresses.push_back(row.Text(1)); });
    return accounts;
}

bool MakeEmpty(const SString& database) {
    std::ofstream(database.Bytes()).flush();
    const auto connection = sqlite::Connection::Open(database, sqlite::Mode::Shared);
    return connection && connection->Execute(kSchema);
}

bool WriteRows(const SString& database, const std::vector<AccountRows>& accounts) {
    const auto connection = sqlite::Connection::Open(database, sqlite::Mode::Shared);
    if (!connection) return false;
    Statement add = connection->Prepare("INSERT INTO accounts (uid) VALUES (?1)");
    Statement add_value =
        connection->Prepare("INSERT INTO fields (account, name, position, value) VALUES (?1, ?2, ?3, ?4)");
    Statement add_address = connection->Prepare("INSERT INTO addresses (address, account) VALUES (?1, ?2)");
    sqlite::Transaction transaction(*connection);
    bool is_done = true;
    for (const AccountRows& account : accounts) {
        is_done = is_done && Execution(add, account.uid).Run();
        const int64_t id = connection->LastId();
        for (const AccountRows::Field& field : account.fields) {
            is_done = is_done && Execution(add_value, id, field.name, field.position, field.value).Run();
        }
        for (const SString& address : account.addresses) {
            is_done = is_done && Execution(add_address, address, id).Run();
        }
    }
    return is_done && transaction.Commit();
}
