// A handle on one named keyed database of the mail system: the file config/NAME under $TernHarbor (SQLite).
// Inside it a value, a list of strings, is addressed by a slash-separated table path and a key. A database
// that is missing, unreadable, locked for more than 5 s, full or damaged makes operations answer zero.
#pragma once

#include <memory>

#include "support/text/sstring_list.h"

class Sdbfile {
  public:
    Sdbfile();
    /// The flag is always 0.
    Sdbfile(const SString& database, int flag);
    ~Sdbfile();
    Sdbfile(const Sdbfile&) = delete;
    Sdbfile& operator=(const Sdbfile&) = delete;
    void Init(const SString& database, int flag);

    /// Opens a table; nonzero on success. For writing, a missing database or table is made; for reading, a
    /// missing one answers zero and nothing is made. An open table is closed first.
    int Open(const SString& table_path, int writable);
    /// After an Open for reading that answered zero: whether there is no such database or table. False when
    /// it could not be told, because the database is locked, damaged or may not be read.
    bool IsMissing() const;
    /// The values under the key; empty when there are none or they cannot be read.
    SStringList Get(const SString& key) const;
    /// The same, telling the two apart: false when they cannot be read.
    bool Read(const SString& key, SStringList* values) const;
    /// Stores the values, durably; nonzero on success.
    int Set(const SString& key, const SStringList& values);
    void CloseDB();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// Makes a database's file complete by itself, so that it can be renamed: works off the journal or the log
/// that a killed process left beside it. False when something is still beside it (another process uses it, or
/// it may not be written); true where there is no such database. No handle of this process may have it open.
bool SettleDatabase(const SString& database);
