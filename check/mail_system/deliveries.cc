// Deliveries of accounts that lead to nobody, the Postmaster's above all.
#include "install/postmaster/deliveries.h"

#include <set>

#include "answer/keys.h"
#include "check/looks.h"
#include "check/numerous.h"
#include "install/accounts/password_entries.h"
#include "support/database/account.h"

namespace {

const char* const kTemplate = "Default";  // its deliveries are placeholders

/// One enumeration: a look-up each would read the password file from its start.
std::set<std::string> Logins() {
    std::set<std::string> logins;
    PasswordEntries entries;
    while (const auto entry = entries.Next()) logins.insert(entry->login.Bytes());
    return logins;
}

/// What an account's mail goes to, as far as it does not exist.
SStringList Nobodies(SAccountDB* accounts, const SAccount& account, const std::set<std::string>& logins) {
    SStringList nobodies;
    for (const SString& uid : DeliveriesOf(account).accounts) {
        if (accounts->Find(uid) == Lookup::Missing) nobodies.Push("the account " + uid);
    }
    for (const SString& login : account.Get("UNIX-UserName")) {
        if (!logins.contains(login.Bytes()) && !EntryOf(login)) nobodies.Push("the login " + login);
    }
    return nobodies;
}

bool HasDelivery(const SAccount& account) {
    for (const char* field : {"Account-Delivery", "Channel-Delivery", "Local-Delivery", "Manager-Delivery"}) {
        if (!account.Get(field).IsEmpty()) return true;
    }
    return false;
}

/// The managers have theirs, and so has the Postmaster, besides the deliveries to people.
bool ReachesNobody(const SString& uid, const SAccount& account) {
    return uid == "Postmaster" ? DeliveriesOf(account).IsEmpty() : !HasDelivery(account);
}

SString Problem(SAccountDB* accounts, const SString& uid, const std::set<std::string>& logins) {
    SAccount account;
    if (uid == kTemplate || accounts->Find(uid, &account) != Lookup::Found) return "";
    const SStringList nobodies = Nobodies(accounts, account, logins);
    if (!nobodies.IsEmpty()) return uid + " delivers to what does not exist: " + nobodies.Join(", ");
    return ReachesNobody(uid, account) ? uid + " delivers to nobody" : SString();
}

void Report(const SString& uid, const SString& problem, Numerous* found) {
    if (uid == "Postmaster") {
        found->Problem(problem, {}, LineFor(QuestionOf(QuestionId::ChangePostmaster), "yes"));
    } else {
        found->Problem(problem, "change the account by the mail system's own administration");
    }
}

}  // namespace

void LookAtDeliveries(Findings* findings) {
    const AccountSession session;
    SAccountDB accounts;
    const SStringList uids = accounts.AccountUIDList();
    if (uids.IsEmpty()) return;  // LookAtAccounts tells why
    const std::set<std::string> logins = Logins();
    Numerous found("deliveries", findings);
    for (const SString& uid : uids) {
        const SString problem = Problem(&accounts, uid, logins);
        if (!problem.IsEmpty()) Report(uid, problem, &found);
    }
    found.End("every account delivers to somebody");
}
