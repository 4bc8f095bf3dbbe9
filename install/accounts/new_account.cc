#include "install/accounts/new_account.h"

#include <algorithm>
#include <array>

#include "support/mail/address.h"

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

struct Field {
    const char* name;
    SStringList values;
};

constexpr size_t kFields = 8;

std::array<Field, kFields> Fields(const NewAccount& account, const SString& password) {
    return {{
        {"Name", account.full_name},
        {"Password", password},
        {"Local-Delivery", "UNIX"},
        {"UNIX-UserName", account.login},
        {"SMTP-Address", account.addresses},
        {"SMTP-RewriteStyle", "comment"},
        {"Access-Domains", account.access_domain},
        {"Finger-Info", account.finger_info},
    }};
}

/// Whether mail could reach the account. One that no mail reaches would be made anew by every run.
bool IsAddressable(const NewAccount& account) {
    return IsLocalPart(account.login) && std::ranges::any_of(account.addresses, [](const SString& address) {
               return S821Address(address).IsValid();
           });
}

/// Sets the account's first count fields; gives how many of them were accepted.
size_t SetFields(const std::array<Field, kFields>& fields, size_t count, SAccountMod* mod) {
    size_t accepted = 0;
    while (accepted < count && mod->Set(fields[accepted].name, fields[accepted].values) != 0) ++accepted;
    return accepted;
}

/// The account with its first *count fields, in one transaction. Where one is refused nothing is written, and
/// *count becomes the number of those in front of it.
Outcome Attempt(const NewAccount& account, size_t* count, SString* uid_and_password) {
    AccountTransaction transaction;
    SAccountDBMod database;
    const Lookup owner = FindOwner(&database, account.addresses);
    if (owner == Lookup::Found || !IsAddressable(account)) {
        transaction.Commit();  // of nothing: the caller's goes on
        return owner == Lookup::Found ? Outcome::Exists : Outcome::Failed;
    }
    if (owner == Lookup::Failed || !transaction.IsOpen()) return Outcome::Failed;

    const SString uid = GenerateAccountUID(account.full_name);
    const SString password = GeneratePassword();
    SAccountMod mod;
    // Where the look-up behind the UID failed, it may be somebody's: that account stays as it was.
    if (database.ModifyAccount(uid, &mod) == 0 || !mod.IsNew()) return Outcome::Failed;
    const size_t accepted = SetFields(Fields(account, password), *count, &mod);
    if (accepted < *count) {
        *count = accepted;
        return Outcome::Failed;
    }
    if (!transaction.Commit()) return Outcome::Failed;
    *uid_and_password = uid + " " + password;
    return Outcome::Created;
}

}  // namespace

bool IsLocalPart(const SString& login) {
    S821Address address(login);
    return address.IsValid() && !address.IsNull() && address.Domain().IsEmpty() &&
           address.LocalPart() == login;
}

Outcome MakeAccount(const NewAccount& account, SString* uid_and_password) {
    size_t count = kFields;
    const Outcome outcome = Attempt(account, &count, uid_and_password);
    const bool is_partly_accepted = count > 0 && count < kFields;
    if (is_partly_accepted) Attempt(account, &count, uid_and_password);
    return outcome;
}
