// The files behind the mail system's databases: config/NAME under the environment's "TernHarbor", SQLite 3,
// owned by the user who made it, mode 0640, closed on exec.
#pragma once

#include "support/database/sqlite.h"

/// What makes a file a database of one kind.
struct DatabaseFormat {
    const char* application_id;  // a number, stored in the file; tells kinds of databases apart
    const char* schema;          // SQL that makes the empty database
    const char* journal_mode;    // as SQLite names it: "WAL", "DELETE"
    const char* synchronous;     // "NORMAL", "FULL", "EXTRA"
};

/// Foreign: of another format, or damaged.
enum class DatabaseState { Missing, Ready, Foreign, Failed };

struct OpenedDatabase {
    DatabaseState state;
    std::unique_ptr<sqlite::Connection> connection;  // only with Ready
    bool is_snapshot = false;                        // does not notice what others write
};

/// The file of a database; empty for a name that leads elsewhere ("../x"), or if "TernHarbor" is unset.
SString DatabasePath(const SString& name);

/// Whether the file and its directory may be written; a file that may only be read is opened without locks.
bool MayWriteDatabase(const SString& path);

/// Opens a database for reading and creates nothing. Missing: there is no file, or an empty one. Failed: it
/// cannot be read, or is locked for more than 5 s.
OpenedDatabase OpenForReading(const SString& path, const DatabaseFormat& format);

/// From here on this process opens no database for writing, and for reading takes a copy: SQLite itself would
/// make files beside a database that has a log, and work that off.
void OnlyLookAtDatabases();

/// Opens a database for writing and creates it if necessary; several processes may do so at once. Never
/// Missing.
OpenedDatabase OpenForWriting(const SString& path, const DatabaseFormat& format);
