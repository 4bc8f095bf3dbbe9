// The mail system's account database, "MTA-Accounts", shared by all account objects of the process. An
// operation succeeds when it returns nonzero; nothing is ever printed or thrown.
#pragma once

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

/// Tells "no such account" from "the database could not be asked", where a wrong guess would write over one.
enum class Lookup { Found, Missing, Failed };

class SAccountDB : public virtual SAccountBase {
  public:
    /// Nonzero when the account exists; the record, if any, is filled.
    virtual int GetAccountInfo(const SString& uid, SAccount* record);
    Lookup Find(const SString& uid, SAccount* record = nullptr);
    /// The owner of an SMTP address (without regard to case); empty when nobody has it.
    virtual SString GetAccountUID(const S821Address& address);
    Lookup FindOwner(const S821Address& address, SString* uid);
    /// All UIDs, in the order of creation.
    virtual SStringList AccountUIDList();
    /// How many there are, without listing them.
    virtual long AccountCount();
    /// The distinct domains of all accounts' SMTP addresses.
    SStringList GetLocalMailDomains();
};

class SAccountDBMod : public SAccountDB {
  public:
    /// Binds the modification to the account, making it when it does not exist yet.
    int ModifyAccount(const SString& uid, SAccountMod* mod);
    /// Zero, too, when there is no such account.
    int DeleteAccount(const SString& uid);
};

/// A pending modification of one account. Outside a transaction each Set survives a killed process at once.
/// Get, Fields and IsLocked give what was stored through it since ModifyAccount, not what the account had
/// before.
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

/// Several account operations as one: all of them or none, also after kill -9. Every change while it lives is
/// a part of it. Once a part has failed, or where it could not begin, nothing is written until it ends, and
/// Commit fails. There is one at a time: inside another, it is not open and does nothing.
class AccountTransaction {
  public:
    AccountTransaction();  // takes the write lock, waiting up to 5 s
    ~AccountTransaction();
    AccountTransaction(const AccountTransaction&) = delete;
    AccountTransaction& operator=(const AccountTransaction&) = delete;
    /// Whether it could begin.
    bool IsOpen() const { return is_open_; }
    bool Commit();

  private:
    bool is_ended_;
    bool is_open_;
};

/// Brings everything committed to the disk. False when the system refused.
bool SyncAccounts();

/// A UID that no account has yet, made from a person's name: "John Q. Public" gives "John_Q_Public", or that
/// followed by the first free number from 1 on. Never "Postmaster".
SString GenerateAccountUID(const SString& name);
/// Six characters: consonant, vowel, consonant, vowel, consonant, digit from 1 to 9.
SString GeneratePassword();
