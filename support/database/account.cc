// Implements account records, their changes and transactions with the account store.
#include "support/database/account.h"

#include "support/database/account_store.h"

AccountStore& SAccountBase::_dbf_DB = AccountStore::Shared();

int SAccountDB::GetAccountInfo(const SString& uid, SAccount* record) {
    return Find(uid, record) == Lookup::Found;
}

Lookup SAccountDB::Find(const SString& uid, SAccount* record) {
    if (record == nullptr) return _dbf_DB.Find(uid);
    record->uid_ = uid;
    record->locked_ = false;
    return _dbf_DB.Read(uid, &record->fields_, &record->locked_);
}

SString SAccountDB::GetAccountUID(const S821Address& address) {
    SString uid;
    return FindOwner(address, &uid) == Lookup::Found ? uid : SString();
}

Lookup SAccountDB::FindOwner(const S821Address& address, SString* uid) {
    const SString key = address.Key();
    return key.IsEmpty() ? Lookup::Missing : _dbf_DB.FindOwner(key, uid);
}

SStringList SAccountDB::AccountUIDList() {
    return _dbf_DB.Uids();
}

long SAccountDB::AccountCount() {
    return _dbf_DB.Count();
}

SStringList SAccountDB::GetLocalMailDomains() {
    return ReadLocalMailDomains().value_or(SStringList());
}

std::optional<SStringList> SAccountDB::ReadLocalMailDomains() {
    return _dbf_DB.Domains();
}

namespace {

/// Runs a change in a transaction of its own, or as a part of the open one, which a failure rolls back.
template <typename Work>
bool Change(AccountStore& store, const Work& work) {
    if (!store.IsInTransaction()) {
        AccountTransaction own;
        return own.IsOpen() && work() && own.Commit();
    }
    const bool is_done = store.IsWritable() && work();
    if (!is_done) store.RollBack();
    return is_done;
}

}  // namespace

int SAccountDBMod::ModifyAccount(const SString& uid, SAccountMod* mod) {
    AccountStore::Binding binding;
    const bool is_bound = !uid.IsEmpty() && Change(_dbf_DB, [&] {
        binding = _dbf_DB.Bind(uid);
        return binding.id != 0;
    });
    mod->uid_ = uid;
    mod->fields_.Reset();
    mod->locked_ = false;
    mod->id_ = is_bound ? binding.id : 0;
    mod->is_new_ = is_bound && binding.is_new;
    return is_bound;
}

int SAccountDBMod::DeleteAccount(const SString& uid) {
    return Change(_dbf_DB, [&] { return _dbf_DB.Delete(uid); });
}

int SAccountMod::Set(const SString& field, const SStringList& values) {
    if (id_ == 0 || !Change(_dbf_DB, [&] { return _dbf_DB.SetField(id_, Uid(), field, values); })) return 0;
    fields_[field] = values;
    return 1;
}

int SAccountMod::Lock() {
    locked_ = id_ != 0 && Change(_dbf_DB, [&] { return _dbf_DB.Lock(id_, Uid()); });
    return locked_;
}

AccountTransaction::AccountTransaction()
    : is_ended_(AccountStore::Shared().IsInTransaction()),  // inside another one
      is_open_(!is_ended_ && AccountStore::Shared().Begin()) {}

AccountTransaction::~AccountTransaction() {
    if (!is_ended_) AccountStore::Shared().End(false);
}

bool AccountTransaction::Commit() {
    if (is_ended_) return false;
    is_ended_ = true;
    return AccountStore::Shared().End(true);
}

struct AccountSession::Use : AccountStore::Use {
    using AccountStore::Use::Use;
};

AccountSession::AccountSession(EndingSignals signals)
    : use_(std::make_unique<Use>(AccountStore::Shared(), signals)) {}
AccountSession::~AccountSession() = default;

bool SyncAccounts() {
    return AccountStore::Shared().Sync();
}
