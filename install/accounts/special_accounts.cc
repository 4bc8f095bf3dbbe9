// The accounts that receive the mail system's own control traffic, and the template for later accounts.
#include "install/settings.h"
#include "install/steps.h"
#include "support/database/account.h"

namespace {

struct Field {
    const char* name;
    SStringList values;
};

struct SpecialAccount {
    const char* uid;
    std::vector<Field> fields;
    bool is_locked;
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
            true};
}

// Placeholders: the pattern for accounts that are made later.
SpecialAccount Template() {
    return {"Default",
            {{"SMTP-RewriteStyle", "comment"},
             {"Access-Domains", gstr_DomainName},
             {"Name", "Name"},
             {"Password", "Lock"},
             {"SMTP-Address", "user@" + gstr_HostName},
             {"Local-Delivery", "UNIX"},
             {"UNIX-UserName", "userid"}},
            false};
}

std::vector<SpecialAccount> SpecialAccounts() {
    return {Manager("Configuration-Manager", "Configuration Manager",
                    {"Configuration@" + gstr_IpAddress, "Configuration@" + gstr_HostName}),
            Manager("Account-Manager", "Account Manager",
                    {"Accounts@" + gstr_IpAddress, "Accounts@" + gstr_HostName, "Account@" + gstr_HostName}),
            Manager("Error-Handler", "Error Handler", {"Error-Handler@" + gstr_IpAddress}), Template()};
}

// What is refused is left out and made by the next run.
void Create(SAccountDBMod* database, SAccountMod* modification, const SpecialAccount& account) {
    AccountTransaction creation;
    // Another process may have made it meanwhile: then it is somebody's, and stays as it is.
    if (database->ModifyAccount(account.uid, modification) == 0 || !modification->IsNew()) return;
    for (const Field& field : account.fields) modification->Set(field.name, field.values);
    if (account.is_locked) modification->Lock();
    creation.Commit();
}

}  // namespace

bool SetupSpecialAccounts() {
    SAccountDBMod database;
    SAccountMod modification;
    for (const SpecialAccount& account : SpecialAccounts()) {
        if (database.GetAccountInfo(account.uid, nullptr) == 0) Create(&database, &modification, account);
    }
    return true;
}
