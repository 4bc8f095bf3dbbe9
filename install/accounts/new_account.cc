// Makes a user's account, unless one of its addresses is taken.
#include "install/accounts/new_account.h"

#include <algorithm>
#include <cstdint>

#include "install/accounts/account_batch.h"
#include "install/accounts/create_account.h"
#include "support/mail/address.h"

namespace {

/// Found if any of the addresses has an owner.
Lookup FindOwner(const SStringList& addresses) {
    SAccountDB accounts;
    for (const SString& address : addresses) {
        SString uid;
        Lookup owner = accounts.FindOwner(S821Address(address), &uid);
        if (owner != Lookup::Missing) return owner;
    }
    return Lookup::Missing;
}

constexpr size_t kAllFields = SIZE_MAX;

AccountFields Fields(const NewAccount& account, const SString& password) {
    return {{"Name", account.full_name},
            {"Password", password},
            {"Local-Delivery", "UNIX"},
            {"UNIX-UserName", account.login},
            {"SMTP-Address", account.addresses},
            {"SMTP-RewriteStyle", "comment"},
            {"Access-Domains", account.access_domain},
            {"Finger-Info", account.finger_info}};
}

/// An unreachable account would be created again by every run.
bool IsAddressable(const NewAccount& account) {
    return IsLocalPart(account.login) && std::ranges::any_of(account.addresses, [](const SString& address) {
               return S821Address(address).IsValid();
           });
}

/// Within the caller's transaction, with only the first fields, count of them.
AccountOutcome Create(const NewAccount& account, size_t count, size_t* refused, SString* uid_and_password) {
    const Lookup owner = FindOwner(account.addresses);
    if (owner == Lookup::Found) return AccountOutcome::Exists;
    if (owner == Lookup::Failed || !IsAddressable(account)) return AccountOutcome::Failed;
    const SString uid = GenerateAccountUID(account.full_name);
    const SString password = GeneratePassword();
    AccountFields fields = Fields(account, password);
    while (fields.size() > count) fields.pop_back();
    if (!CreateAccount(uid, fields, AccountLock::Open, refused)) return AccountOutcome::Failed;
    *uid_and_password = uid + " " + password;
    return AccountOutcome::Created;
}

AccountOutcome CreateAlone(const NewAccount& account, size_t count, size_t* refused,
                           SString* uid_and_password) {
    AccountBatch transaction;
    const AccountOutcome outcome = Create(account, count, refused, uid_and_password);
    const bool is_committed = transaction.Commit();
    return outcome == AccountOutcome::Created && !is_committed ? AccountOutcome::Failed : outcome;
}

}  // namespace

bool IsLocalPart(const SString& login) {
    S821Address address(login);
    return address.IsValid() && !address.IsNull() && address.Domain().IsEmpty() &&
           address.LocalPart() == login;
}

AccountOutcome MakeAccount(const NewAccount& account, SString* uid_and_password) {
    size_t refused = 0;
    const AccountOutcome outcome = CreateAlone(account, kAllFields, &refused, uid_and_password);
    // Prescribed: the fields in front of a refused one stay, though the account counts as failed.
    if (refused > 0) CreateAlone(account, refused, nullptr, uid_and_password);
    return outcome;
}

AccountOutcome MakeAccountInBatch(const NewAccount& account, SString* uid_and_password) {
    return Create(account, kAllFields, nullptr, uid_and_password);
}
