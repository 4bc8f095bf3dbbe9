// The account database: how many accounts there are, the Postmaster, and logins that have none.
#include <unistd.h>

#include <set>

#include "check/looks.h"
#include "install/accounts/candidates.h"
#include "install/settings.h"
#include "support/database/account.h"
#include "support/text/counted.h"

namespace {

/// The logins that an account delivers to.
std::set<std::string> LoginsWithAccount(SAccountDB* accounts) {
    std::set<std::string> logins;
    for (const SString& uid : accounts->AccountUIDList()) {
        SAccount account;
        if (accounts->Find(uid, &account) != Lookup::Found) continue;
        for (const SString& login : account.Get("UNIX-UserName")) logins.insert(login.Bytes());
    }
    return logins;
}

void LookForMissing(SAccountDB* accounts, Findings* findings) {
    const std::set<std::string> with = LoginsWithAccount(accounts);
    SStringList without;
    PasswordEntries entries(gstr_PasswdFile);
    while (const auto entry = entries.Next()) {
        if (ReasonToSkip(*entry) == nullptr && !with.contains(entry->login.Bytes()))
            without.Push(entry->login);
    }
    if (without.IsEmpty()) {
        findings->Ok("accounts", "every login of " + gstr_PasswdFile + " that can have one has one");
    } else {
        findings->Note("accounts", "without one: " + Counted(without.Count(), "login") + " of " +
                                       gstr_PasswdFile + ": " + FirstOf(without));
    }
}

}  // namespace

void LookAtAccounts(Findings* findings) {
    const AccountSession session;
    SAccountDB accounts;
    const Lookup postmaster = accounts.Find("Postmaster");
    const SString database = gstr_TernHarbor + "config/MTA-Accounts";
    if (postmaster == Lookup::Failed && getuid() != 0) {
        return findings->NotLookedAt("accounts", database + ", which only root and the mail owner may read");
    }
    if (postmaster == Lookup::Failed) {
        return findings->Problem(
            "accounts",
            database + " cannot be read: it is damaged, closed to the mail owner, or always being written",
            "sqlite3 " + database + " 'PRAGMA integrity_check'");
    }
    const long count = accounts.AccountCount();
    if (count == 0) return findings->Note("accounts", "there is none yet; Install makes them");
    findings->Ok("accounts", "there are " + SString(count));
    if (postmaster == Lookup::Found) {
        LookForMissing(&accounts, findings);
    } else {
        findings->Note("accounts", "there is no Postmaster yet; Install makes it");
    }
}
