// Deliveries of accounts that lead to nobody, the Postmaster's above all.
#include "install/postmaster/deliveries.h"

#include <map>
#include <set>
#include <vector>

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

/// One that leads to no account. The Postmaster has that of a manager besides those to people.
bool HasOwnDelivery(const SString& uid, const SAccount& account) {
    if (uid == "Postmaster") return !DeliveriesOf(account).channels.IsEmpty();
    for (const char* field : {"Channel-Delivery", "Local-Delivery", "Manager-Delivery"}) {
        if (!account.Get(field).IsEmpty()) return true;
    }
    return false;
}

/// The accounts, in lower case, whose mail reaches somebody, over whichever others; a circle does not.
std::set<std::string> Reaching(SAccountDB* accounts, const SStringList& uids) {
    std::map<std::string, std::vector<std::string>> senders;
    std::vector<std::string> found;
    for (const SString& uid : uids) {
        SAccount account;
        if (accounts->Find(uid, &account) != Lookup::Found) continue;
        const std::string sender = SString(uid).LowerCase().Bytes();
        if (HasOwnDelivery(uid, account)) found.push_back(sender);
        for (SString to : DeliveriesOf(account).accounts) senders[to.LowerCase().Bytes()].push_back(sender);
    }
    std::set<std::string> reaching(found.begin(), found.end());
    while (!found.empty()) {
        const std::string reached = found.back();
        found.pop_back();
        for (const std::string& sender : senders[reached]) {
            if (reaching.insert(sender).second) found.push_back(sender);
        }
    }
    return reaching;
}

SString Problem(SAccountDB* accounts, const SString& uid, const std::set<std::string>& logins,
                const std::set<std::string>& reaching) {
    SAccount account;
    if (uid == kTemplate || accounts->Find(uid, &account) != Lookup::Found) return "";
    const SStringList nobodies = Nobodies(accounts, account, logins);
    if (!nobodies.IsEmpty()) return uid + " delivers to what does not exist: " + nobodies.Join(", ");
    return reaching.contains(SString(uid).LowerCase().Bytes()) ? SString() : uid + " delivers to nobody";
}

void Report(const SString& uid, const SString& problem, Numerous* found) {
    if (uid == "Postmaster") {
        using enum QuestionId;
        found->Problem(
            problem, {},
            {LineFor(QuestionOf(ChangePostmaster), "yes"), LineFor(QuestionOf(PostmasterPassword), ""),
             LineFor(QuestionOf(AccessDomains), ""), LineFor(QuestionOf(Postmasters), "ADDRESS")});
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
    const std::set<std::string> reaching = Reaching(&accounts, uids);
    Numerous found("deliveries", findings);
    for (const SString& uid : uids) {
        const SString problem = Problem(&accounts, uid, logins, reaching);
        if (!problem.IsEmpty()) Report(uid, problem, &found);
    }
    found.End("every account delivers to somebody");
}
