// What a handle on a module's database keeps, and what makes a file one.
#pragma once

#include "support/database/database_file.h"
#include "support/database/sdbfile.h"

// A rollback journal exists only during a write, so the file can be renamed. EXTRA also syncs the directory
// after removing the journal; otherwise a power failure could undo what was stored.
inline constexpr DatabaseFormat kModuleFormat = {
    "1414680141",  // "TRNM"
    "CREATE TABLE tables (path TEXT PRIMARY KEY) WITHOUT ROWID;"
    "CREATE TABLE settings (path TEXT NOT NULL, key TEXT NOT NULL, position INTEGER NOT NULL,"
    "  value TEXT NOT NULL, PRIMARY KEY (path, key, position)) WITHOUT ROWID;",
    "DELETE",
    "EXTRA",
};

/// "/a/b", whatever slashes the path was written with; "/" for the outermost table.
SString NormalTablePath(const SString& table_path);

struct Sdbfile::State {
    SString name;
    SString table;
    bool is_open = false;
    bool writable = false;
    bool missing = false;
    std::unique_ptr<sqlite::Connection> connection;  // only while the database is held
    std::optional<sqlite::Transaction> hold;
};
