// Creates the accounts that receive the mail system's own control traffic, and the template for later
// accounts.
#include "install/accounts/special_accounts.h"

#include <algorithm>

#include "install/accounts/account_batch.h"
#include "install/accounts/create_account.h"
#include "install/settings.h"
#include "install/steps.h"

namespace {

struct SpecialAccount {
    const char* uid;
    AccountFields fields;
    AccountLock lock;
};

SpecialAccount Manager(const char* uid, const char* name, const SStringList& addresses) {
    return {uid,
            {{"Name", name},
             {"Manager-Delivery", uid},
             {"SMTP-Address", addresses},
             {"SMTP-RewriteStyle", "comment"},
             {"Finger-Access", "none"},
             {"Access-Domains", "none"},
             {"Password", GeneratePassword()}},
            AccountLock::Locked};
}

// Prescribed placeholders, "Lock" and all, for accounts made later.
SpecialAccount Template() {
    return {"Default",
            {{"SMTP-RewriteStyle", "comment"},
             {"Access-Domains", gstr_DomainName},
             {"Name", "Name"},
             {"Password", "Lock"},
             {"SMTP-Address", "user@" + gstr_HostName},
             {"Local-Delivery", "UNIX"},
             {"UNIX-UserName", "userid"}},
            AccountLock::Open};
}

std::vector<SpecialAccount> SpecialAccounts() {
    return {Manager("Configuration-Manager", "Configuration Manager",
                    {"Configuration@" + gstr_IpAddress, "Configuration@" + gstr_HostName}),
            Manager("Account-Manager", "Account Manager",
                    {"Accounts@" + gstr_IpAddress, "Accounts@" + gstr_HostName, "Account@" + gstr_HostName}),
            Manager("Error-Handler", "Error Handler", {"Error-Handler@" + gstr_IpAddress}), Template()};
}

// An account refused in part is rolled back, for the next run to create.
void Create(const SpecialAccount& account) {
    AccountBatch creation;
    if (CreateAccount(account.uid, account.fields, account.lock)) creation.Commit();
}

bool IsMissing(const SpecialAccount& account) {
    return SAccountDB().GetAccountInfo(account.uid, nullptr) == 0;
}

}  // namespace

size_t MissingSpecialAccounts() {
    return static_cast<size_t>(std::ranges::count_if(SpecialAccounts(), IsMissing));
}

bool SetupSpecialAccounts() {
    const AccountSession session;
    for (const SpecialAccount& account : SpecialAccounts()) {
        if (IsMissing(account)) Create(account);
    }
    return true;
}
