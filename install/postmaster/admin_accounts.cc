#include "install/postmaster/admin_accounts.h"

namespace {

using Outcome = AdminAccounts::Outcome;

struct Field {
    SString name;
    SStringList values;
};

bool Create(SAccountDBMod* accounts, const SString& uid, const std::vector<Field>& fields) {
    SAccountMod account;
    if (accounts->ModifyAccount(uid, &account) == 0 || !account.IsNew()) return false;
    for (const Field& field : fields) {
        if (account.Set(field.name, field.values) == 0) return false;
    }
    return account.Lock() != 0;
}

bool CreatePostmaster(SAccountDBMod* accounts, const SString& host, const SString& domain) {
    return Create(accounts, "Postmaster",
                  {{"Name", "Mail Administrator"},
                   {"SMTP-Address", "Postmaster@" + host},
                   {"SMTP-RewriteStyle", "comment"},
                   {"Manager-Delivery", ""},
                   {"Access-Domains", domain},
                   {"Password", GeneratePassword()}});
}

bool CreateRoot(SAccountDBMod* accounts, const SString& uid, const SString& address, const SString& domain) {
    return Create(accounts, uid,
                  {{"Name", "System Administrator"},
                   {"SMTP-Address", address},
                   {"SMTP-RewriteStyle", "comment"},
                   {"UNIX-UserName", "root"},
                   {"Local-Delivery", "UNIX"},
                   {"Access-Domains", domain},
                   {"Password", GeneratePassword()}});
}

Outcome Deliver(SAccountDBMod* accounts, const SString& root) {
    SAccountMod postmaster;
    if (accounts->ModifyAccount("Postmaster", &postmaster) == 0) return Outcome::NotReopened;
    return postmaster.Set("Account-Delivery", root) != 0 ? Outcome::Done : Outcome::NotDelivered;
}

/// All or nothing.
AdminAccounts Make(SAccountDBMod* accounts, const SString& host, const SString& domain, bool deliver) {
    AccountTransaction creation;
    AdminAccounts made;
    const SString address = "root@" + host;
    SString root;
    if (!creation.IsOpen() || !CreatePostmaster(accounts, host, domain)) return {Outcome::NoPostmaster};
    const Lookup owner = accounts->FindOwner(address, &root);
    if (owner == Lookup::Failed) return {Outcome::NoPostmaster};
    made.root_was_made = owner == Lookup::Missing;
    if (made.root_was_made) {
        root = GenerateAccountUID("Root");
        if (!CreateRoot(accounts, root, address, domain)) return {Outcome::NoRoot, true};
    }
    if (deliver) made.outcome = Deliver(accounts, root);
    if (made.outcome == Outcome::Done && !creation.Commit()) made.outcome = Outcome::NoPostmaster;
    return made;
}

}  // namespace

AdminAccounts MakeAdminAccounts(SAccountDBMod* accounts, const SString& host, const SString& domain) {
    AdminAccounts made = Make(accounts, host, domain, true);
    if (made.outcome != Outcome::NotDelivered) return made;
    // The refusal took everything with it; deliveries can still be given in the dialogue, so once more
    // without.
    made = Make(accounts, host, domain, false);
    if (made.outcome == Outcome::Done) made.outcome = Outcome::NotDelivered;
    return made;
}
