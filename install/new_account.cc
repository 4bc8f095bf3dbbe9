#include "install/new_account.h"

#include "support/address.h"

namespace {

/// Whether any of the addresses has an owner.
Lookup FindOwner(SAccountDB* database, const SStringList& addresses) {
    for (const SString& address : addresses) {
        SString uid;
        Lookup owner = database->FindOwner(S821Address(address), &uid);
        if (owner != Lookup::Missing) return owner;
    }
    return Lookup::Missing;
}

bool SetFields(const NewAccount& account, const SString& password, SAccountMod* mod) {
    return mod->Set("Name", account.full_name) != 0 && mod->Set("Password", password) != 0 &&
           mod->Set("Local-Delivery", "UNIX") != 0 && mod->Set("UNIX-UserName", account.login) != 0 &&
           mod->Set("SMTP-Address", account.addresses) != 0 &&
           mod->Set("SMTP-RewriteStyle", "comment") != 0 &&
           mod->Set("Access-Domains", account.access_domain) != 0 &&
           mod->Set("Finger-Info", account.finger_info) != 0;
}

}  // namespace

bool IsLocalPart(const SString& login) {
    S821Address address(login);
    return address.IsValid() && !address.IsNull() && address.Domain().IsEmpty() &&
           address.LocalPart() == login;
}

Outcome MakeAccount(const AccountTransaction& transaction, const NewAccount& account,
                    SString* uid_and_password) {
    SAccountDBMod database;
    Lookup owner = FindOwner(&database, account.addresses);
    if (owner == Lookup::Found) return Outcome::Exists;
    if (owner == Lookup::Failed || !transaction.IsOpen() || !IsLocalPart(account.login))
        return Outcome::Failed;

    AccountTransaction own;
    SString uid = GenerateAccountUID(account.full_name);
    SString password = GeneratePassword();
    SAccountMod mod;
    // Where the look-up behind the UID failed, it may be somebody's: that account stays as it was.
    if (!own.IsOpen() || database.ModifyAccount(uid, &mod) == 0 || !mod.IsNew()) return Outcome::Failed;
    bool is_whole = SetFields(account, password, &mod);
    if (!own.Commit() || !is_whole) return Outcome::Failed;
    *uid_and_password = uid + " " + password;
    return Outcome::Created;
}
