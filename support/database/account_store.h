// Reads and writes the account database's rows (docs/storage.md has the schema and its reasons) over one
// connection, opened on demand and closed with the outermost use. Used by account.cc and account_uid.cc.
#pragma once

#include <cstdint>

#include "support/database/account.h"
#include "support/database/database_file.h"
#include "support/process/blocked_signals.h"

class AccountStore {
  public:
    static AccountStore& Shared();
    AccountStore();
    ~AccountStore();
    AccountStore(const AccountStore&) = delete;
    AccountStore& operator=(const AccountStore&) = delete;

    /// Keeps the session open from when something opens it to the end of the outermost use. Every operation
    /// is one.
    class Use {
      public:
        explicit Use(AccountStore& store, EndingSignals signals = EndingSignals::Blocked);
        ~Use();
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

      private:
        std::optional<BlockedSignals> block_;  // ends after the session is closed
        AccountStore& store_;
    };

    // --- queries; on failure lists are empty and the count is 0
    Lookup Find(const SString& uid);
    Lookup Read(const SString& uid, SNamedStringList* fields, bool* is_locked);
    /// The oldest account that has the address, given by its S821Address::Key.
    Lookup FindOwner(const SString& address_key, SString* uid);
    SStringList Uids();
    long Count();
    /// In lower case, sorted; nothing on failure.
    std::optional<SStringList> Domains();
    /// Unchanged as long as no UID can have become free: nothing was deleted or rolled back here, and no
    /// other process has written.
    uint64_t Epoch();

    // --- one transaction at a time
    /// Takes the write lock. False if it could not be had; then nothing can be written until End.
    bool Begin();
    /// False if the transaction was rolled back.
    bool End(bool commit);
    bool IsInTransaction() const { return is_in_transaction_; }
    /// Whether changes are accepted. SQLite may roll back by itself, as on a full disk: a change after that
    /// would be committed alone.
    bool IsWritable() const { return transaction_ && transaction_->IsOpen(); }
    /// Rolls back after a change that failed half-way; nothing more is written until End.
    void RollBack();
    /// Syncs everything committed to the disk.
    bool Sync();

    // --- changes, only while IsWritable; a failed one may be half made
    struct Binding {
        int64_t id = 0;  // 0: refused
        bool is_new = false;
    };
    Binding Bind(const SString& uid);
    bool Delete(const SString& uid);
    /// For a bound account; false if it was deleted.
    bool SetField(int64_t id, const SString& uid, const SString& field, const SStringList& values);
    bool Lock(int64_t id, const SString& uid);

  private:
    struct Session;  // the connection, its statements and the file that it has open
    DatabaseState OpenSession(bool for_writing);
    void CloseSession();
    bool Checkpoint();
    bool Holds(int64_t id, const SString& uid);
    Binding BindFresh(const SString& uid);
    bool NoteFirstValue(int64_t id, const SString& uid, const SString& field);
    bool RemoveField(int64_t id, const SString& uid, const SString& field);
    bool AddAddresses(int64_t id, const SStringList& values);
    bool RemoveAddresses(int64_t id);

    int uses_ = 0;
    std::unique_ptr<Session> session_;
    bool is_unsynced_ = false;            // committed, but perhaps not on the disk yet
    bool has_sync_failed_ = false;        // since the last Sync
    std::optional<Use> transaction_use_;  // ends after the transaction
    std::optional<sqlite::Transaction> transaction_;
    bool is_in_transaction_ = false;  // between Begin and End, even after a failure
    uint64_t epoch_ = 0;

    /// The account that the open transaction made last. No other fields of it are stored than these.
    struct Fresh {
        int64_t id = 0;
        SString uid;
        SStringList fields;
    };
    Fresh fresh_;
};
