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

/// Whose mail reaches somebody, over whichever other accounts; in a circle it does not. UIDs in lower case.
class Reach {
  public:
    void Add(const SString& uid, const SAccount& account) {
        const std::string sender = Key(uid);
        if (HasOwnDelivery(uid, account)) found_.push_back(sender);
        for (const SString& to : DeliveriesOf(account).accounts) senders_[Key(to)].push_back(sender);
    }
    /// After all were added.
    void Follow() {
        reaching_.insert(found_.begin(), found_.end());
        while (!found_.empty()) {
            const std::string reached = found_.back();
            found_.pop_back();
            for (const std::string& sender : senders_[reached]) {
                if (reaching_.insert(sender).second) found_.push_back(sender);
            }
        }
    }
    bool Has(const SString& uid) const { return reaching_.contains(Key(uid)); }

  private:
    static std::string Key(SString uid) { return uid.LowerCase().Bytes(); }

    std::map<std::string, std::vector<std::string>> senders_;
    std::vector<std::string> found_;
    std::set<std::string> reaching_;
};

struct Reading {
    SString uid;
    SStringList nobodies;
};

/// Each account is read once.
std::vector<Reading> ReadAll(SAccountDB* accounts, const SStringList& uids, Reach* reach) {
    const std::set<std::string> logins = Logins();
    std::vector<Reading> readings;
    for (const SString& uid : uids) {
        SAccount account;
        if (accounts->Find(uid, &account) != Lookup::Found) continue;
        reach->Add(uid, account);
        if (uid != kTemplate) readings.push_back({uid, Nobodies(accounts, account, logins)});
    }
    reach->Follow();
    return readings;
}

SString Problem(const Reading& reading, const Reach& reach) {
    if (!reading.nobodies.IsEmpty()) {
        return reading.uid + " delivers to what does not exist: " + reading.nobodies.Join(", ");
    }
    return reach.Has(reading.uid) ? SString() : reading.uid + " delivers to nobody";
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
    Reach reach;
    Numerous found("deliveries", findings);
    for (const Reading& reading : ReadAll(&accounts, uids, &reach)) {
        const SString problem = Problem(reading, reach);
        if (!problem.IsEmpty()) Report(reading.uid, problem, &found);
    }
    found.End("every account delivers to somebody");
}
