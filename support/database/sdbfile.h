// A handle on one named keyed database of the mail system: the file config/NAME under $TernHarbor (SQLite). A
// value is a list of strings under a table path ("/Config") and a key. Operations give zero if the database
// is missing, unreadable, locked for more than 5 s, full or damaged.
//
// Each operation opens the file and closes it again: a handle that waits for an administrator's answer does
// not keep to a file that another process has replaced meanwhile.
#pragma once

#include <memory>
#include <optional>

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

    /// Opens a table and closes one that is open; nonzero on success. For writing, a missing database or
    /// table is made; for reading, the result is zero then.
    int Open(const SString& table_path, int writable);
    /// After an Open for reading that gave zero: whether there is no such database or table. False if that
    /// could not be told (locked, damaged, no permission).
    bool IsMissing() const;
    /// The values under the key; empty when there are none or they cannot be read.
    SStringList Get(const SString& key) const;
    /// The same, but false if they cannot be read.
    bool Read(const SString& key, SStringList* values) const;
    /// Stores the values, durably; nonzero on success.
    int Set(const SString& key, const SStringList& values);
    enum class Outcome { Set, Differs, Failed };
    /// The same, but only if the expected values are under the key when it has the lock for writing. Those
    /// that it found instead are there with Differs; nothing is stored then.
    Outcome SetIf(const SString& key, const SStringList& expected, const SStringList& values,
                  SStringList* found);
    void CloseDB();

    /// Keeps other processes from writing the database until CloseDB or the end of the handle; nothing waits
    /// in a journal beside it then. In between Open is for reading. What is missing, may only be read or is
    /// no database is left without a lock. False if the lock could not be had in 5 s.
    ///
    /// Nothing else in the process may open and close the file meanwhile: that would drop the lock (POSIX).
    bool Hold();
    /// Whether the database that is held is the other one, too, by a second name (a hard link).
    bool IsHeldAs(const SString& database) const;
    /// The bytes of the database's file, without dropping the lock.
    std::optional<SString> Bytes() const;

  private:
    struct State;
    enum class Holding { Held, NotNeeded, Again, Refused };
    Holding TryToHold();
    int OpenHeld(int writable);
    int OpenTable(int writable);
    std::unique_ptr<State> state_;
};

/// Makes a database's file safe to rename: works off the journal or log that a killed process left beside it.
/// False if that is still there (another process uses it, or it may not be written). True if there is no such
/// database. No handle of this process may have it open.
bool SettleDatabase(const SString& database);
