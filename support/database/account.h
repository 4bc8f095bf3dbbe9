// The mail system's account database, "MTA-Accounts", shared by all account objects of the process. An
// operation succeeds when it returns nonzero; nothing is ever printed or thrown.
#pragma once

#include <cstdint>
#include <memory>

#include "support/database/sdbfile.h"
#include "support/mail/address.h"
#include "support/text/named_list.h"

class AccountStore;  // the rows behind it (account_store.h)

class SAccountBase {
  public:
    virtual ~SAccountBase() = default;

  protected:
    static AccountStore& _dbf_DB;  // the one database of all account objects of the process
};

/// One account's UID and its fields, as read.
class SAccount : public virtual SAccountBase {
  public:
    const SString& Uid() const { return uid_; }
    SStringList Get(const SString& field) const { return fields_.Get(field); }
    SStringList Fields() const { return fields_.Keys(); }
    bool IsLocked() const { return locked_; }

  private:
    friend class SAccountDB;
    friend class SAccountDBMod;
    friend class SAccountMod;
    SString uid_;
    SNamedStringList fields_;
    bool locked_ = false;
};

class SAccountMod;

/// Tells "no such account" from "the database could not be read", after which creating could overwrite one.
enum class Lookup { Found, Missing, Failed };

class SAccountDB : public virtual SAccountBase {
  public:
    /// Nonzero if the account exists; fills in the record unless it is null.
    virtual int GetAccountInfo(const SString& uid, SAccount* record);
    Lookup Find(const SString& uid, SAccount* record = nullptr);
    /// The owner of an SMTP address (case-insensitive); empty if there is none.
    virtual SString GetAccountUID(const S821Address& address);
    Lookup FindOwner(const S821Address& address, SString* uid);
    /// All UIDs, in the order of creation.
    virtual SStringList AccountUIDList();
    /// The number of accounts, without listing them.
    virtual long AccountCount();
    /// The distinct domains of all accounts' SMTP addresses.
    SStringList GetLocalMailDomains();
    /// The same; nothing if they cannot be read.
    std::optional<SStringList> ReadLocalMailDomains();
};

class SAccountDBMod : public SAccountDB {
  public:
    /// Binds the modification to the account, creating it if necessary.
    int ModifyAccount(const SString& uid, SAccountMod* mod);
    /// Zero also if there is no such account.
    int DeleteAccount(const SString& uid);
};

/// A modification of one account. Outside a transaction each Set is committed at once. Get, Fields and
/// IsLocked return only what was set through it since ModifyAccount.
class SAccountMod : public virtual SAccount {
  public:
    SAccountMod() = default;
    SAccountMod(const SAccountMod&) = default;  // a move would move the virtual base twice
    SAccountMod& operator=(const SAccountMod&) = default;
    /// Replaces the values of one field.
    int Set(const SString& field, const SStringList& values);
    int Lock();
    /// Whether ModifyAccount made the account.
    bool IsNew() const { return is_new_; }

  private:
    friend class SAccountDBMod;
    int64_t id_ = 0;
    bool is_new_ = false;
};

/// Makes all account changes in its scope atomic, also under kill -9. After a failed change, or if it could
/// not begin, nothing is written until it ends, and Commit fails. They do not nest: inside another one it is
/// not open and does nothing.
class AccountTransaction {
  public:
    AccountTransaction();  // takes the write lock, waiting up to 5 s
    ~AccountTransaction();
    AccountTransaction(const AccountTransaction&) = delete;
    AccountTransaction& operator=(const AccountTransaction&) = delete;
    /// Whether it began.
    bool IsOpen() const { return is_open_; }
    bool Commit();

  private:
    bool is_ended_;
    bool is_open_;
};

/// What keeps a signal from ending the process while the database is open, with its log beside it. Blocked:
/// it comes at the end. Handled: the caller has a handler that lets the process go on.
enum class EndingSignals { Blocked, Handled };

/// Keeps the account database open from its first use in the scope to the scope's end, for speed. Without a
/// session each operation opens and closes it. Closed it is one file by itself, unless another process has
/// it open. Sessions nest; the outermost counts.
class AccountSession {
  public:
    explicit AccountSession(EndingSignals signals = EndingSignals::Blocked);
    ~AccountSession();
    AccountSession(const AccountSession&) = delete;
    AccountSession& operator=(const AccountSession&) = delete;

  private:
    struct Use;
    std::unique_ptr<Use> use_;
};

/// Syncs everything committed to the disk. False if the system refused.
bool SyncAccounts();

/// A free UID made from a person's name: "John Q. Public" gives "John_Q_Public", or that followed by the
/// first free number from 1 on. Never "Postmaster".
SString GenerateAccountUID(const SString& name);
/// Six characters: consonant, vowel, consonant, vowel, consonant, digit from 1 to 9.
SString GeneratePassword();
