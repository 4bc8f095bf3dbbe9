#include "install/postmaster_accounts.h"

namespace {

struct Field {
    SString name;
    SStringList values;
};

bool SetAll(SAccountMod* account, const std::vector<Field>& fields) {
    for (const Field& field : fields) {
        if (account->Set(field.name, field.values) == 0) return false;
    }
    return true;
}

bool Create(SAccountDBMod* accounts, const SString& uid, SAccountMod* account,
            const std::vector<Field>& fields) {
    return accounts->ModifyAccount(uid, account) != 0 && account->IsNew() && SetAll(account, fields) &&
           account->Lock() != 0;
}

}  // namespace

SString RootAddress(const SString& host) {
    return "root@" + host;
}

bool CreatePostmaster(SAccountDBMod* accounts, SAccountMod* postmaster, const SString& host,
                      const SString& domain) {
    return Create(accounts, "Postmaster", postmaster,
                  {{"Name", "Mail Administrator"},
                   {"SMTP-Address", "Postmaster@" + host},
                   {"SMTP-RewriteStyle", "comment"},
                   {"Manager-Delivery", ""},
                   {"Access-Domains", domain},
                   {"Password", GeneratePassword()}});
}

SString CreateRoot(SAccountDBMod* accounts, const SString& host, const SString& domain) {
    const SString uid = GenerateAccountUID("Root");
    SAccountMod root;
    const bool created = Create(accounts, uid, &root,
                                {{"Name", "System Administrator"},
                                 {"SMTP-Address", RootAddress(host)},
                                 {"SMTP-RewriteStyle", "comment"},
                                 {"UNIX-UserName", "root"},
                                 {"Local-Delivery", "UNIX"},
                                 {"Access-Domains", domain},
                                 {"Password", GeneratePassword()}});
    return created ? uid : SString();
}
