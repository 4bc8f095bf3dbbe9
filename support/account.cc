#include "support/account.h"

#include "support/account_store.h"

AccountStore& SAccountBase::Store() {
    return AccountStore::Shared();
}

int SAccountDB::GetAccountInfo(const SString& uid, SAccount* record) {
    return Find(uid, record) == Lookup::Found;
}

Lookup SAccountDB::Find(const SString& uid, SAccount* record) {
    if (record == nullptr) {
        return Store().Find(uid);
    }
    record->uid_ = uid;
    record->locked_ = false;
    return Store().Read(uid, &record->fields_, &record->locked_);
}

SString SAccountDB::GetAccountUID(const S821Address& address) {
    SString uid;
    return FindOwner(address, &uid) == Lookup::Found ? uid : SString();
}

Lookup SAccountDB::FindOwner(const S821Address& address, SString* uid) {
    const SString key = address.Key();
    return key.IsEmpty() ? Lookup::Missing : Store().FindOwner(key, uid);
}

SStringList SAccountDB::AccountUIDList() {
    return Store().Uids();
}

long SAccountDB::AccountCount() {
    return Store().Count();
}

SStringList SAccountDB::GetLocalMailDomains() {
    return Store().Domains();
}

// A look-up that failed must never pass for "there is none": the account would be written over.
int SAccountDBMod::ModifyAccount(const SString& uid, SAccountMod* mod) {
    mod->id_ = 0;
    AccountTransaction transaction;
    if (uid.IsEmpty() || !transaction.IsOpen()) {
        return 0;
    }
    const AccountStore::Binding binding = Store().Bind(uid);
    if (binding.id == 0 || !transaction.Commit()) {
        return 0;
    }
    mod->id_ = binding.id;
    mod->uid_ = uid;
    mod->is_new_ = binding.is_new;
    return 1;
}

int SAccountDBMod::DeleteAccount(const SString& uid) {
    AccountTransaction transaction;
    return transaction.IsOpen() && Store().Delete(uid) && transaction.Commit();
}

int SAccountMod::Set(const SString& field, const SStringList& values) {
    if (id_ == 0) {
        return 0;
    }
    AccountTransaction transaction;
    return transaction.IsOpen() && Store().SetField(id_, Uid(), field, values) && transaction.Commit();
}

int SAccountMod::Lock() {
    if (id_ == 0) {
        return 0;
    }
    AccountTransaction transaction;
    return transaction.IsOpen() && Store().Lock(id_, Uid()) && transaction.Commit();
}

AccountTransaction::AccountTransaction() : open_(AccountStore::Shared().Begin()) {}

AccountTransaction::~AccountTransaction() {
    if (!ended_) {
        AccountStore::Shared().End(false);
    }
}

bool AccountTransaction::Commit() {
    ended_ = true;
    return AccountStore::Shared().End(true);
}

bool SyncAccounts() {
    return AccountStore::Shared().Sync();
}
