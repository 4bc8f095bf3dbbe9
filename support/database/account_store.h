// The rows behind the account database (docs/storage.md has the schema and its reasons): one connection for
// the whole process, opened on demand, its statements prepared once. Used by account.cc and account_uid.cc.
#pragma once

#include "support/database/account.h"
#include "support/database/database_file.h"

class AccountStore {
  public:
    static AccountStore& Shared();
    AccountStore();
    ~AccountStore();
    AccountStore(const AccountStore&) = delete;
    AccountStore& operator=(const AccountStore&) = delete;

    // --- reading; on failure the lists are empty and the count is 0
    Lookup Find(const SString& uid);
    Lookup Read(const SString& uid, SNamedStringList* fields, bool* is_locked);
    /// The oldest account that has the address, given by its S821Address::Key.
    Lookup FindOwner(const SString& address_key, SString* uid);
    SStringList Uids();
    long Count();
    /// In lower case, sorted.
    SStringList Domains();
    /// A number that stays the same while no UID can have become free: nothing was deleted or taken back
    /// here, and no other process has written.
    uint64_t Epoch();

    // --- one transaction at a time
    /// Takes the write lock. False when it was not to be had: nothing can be written until End then.
    bool Begin();
    /// False when nothing of the transaction stays.
    bool End(bool commit);
    bool IsInTransaction() const { return is_in_transaction_; }
    /// Whether changes are accepted. On a full disk and its like the library gives up the transaction by
    /// itself: a change after that would be lasting at once, without the rest.
    bool IsWritable() const { return transaction_ && transaction_->IsOpen(); }
    /// After a change that failed half-way: nothing of the transaction stays, and nothing more is written.
    void TakeBack();
    /// Brings everything committed to the disk.
    bool Sync();

    // --- changes, while IsWritable; false after a failure that may have left half of the change
    struct Binding {
        int64_t id = 0;  // 0: refused
        bool is_new = false;
    };
    Binding Bind(const SString& uid);
    bool Delete(const SString& uid);
    /// For a bound account; false when it is gone.
    bool SetField(int64_t id, const SString& uid, const SString& field, const SStringList& values);
    bool Lock(int64_t id, const SString& uid);

  private:
    struct Session;  // the connection, its statements and the file that it has open
    DatabaseState OpenSession(bool for_writing);
    bool Holds(int64_t id, const SString& uid);
    bool AddAddresses(int64_t id, const SStringList& values);
    bool RemoveAddresses(int64_t id);

    std::unique_ptr<Session> session_;
    std::optional<sqlite::Transaction> transaction_;
    bool is_in_transaction_ = false;  // between Begin and End, whatever has become of it
    uint64_t epoch_ = 0;
};
