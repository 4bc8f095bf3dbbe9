// Makes the two accounts and the delivery between them in one transaction.
#include "install/postmaster/admin_accounts.h"

#include "install/accounts/account_batch.h"
#include "install/accounts/account_digest.h"
#include "install/accounts/create_account.h"
#include "install/record/record.h"

namespace {

bool CreatePostmaster(const SString& host, const SString& domain) {
    return CreateAccount("Postmaster",
                         {{"Name", "Mail Administrator"},
                          {"SMTP-Address", "Postmaster@" + host},
                          {"SMTP-RewriteStyle", "comment"},
                          {"Manager-Delivery", ""},
                          {"Access-Domains", domain},
                          {"Password", GeneratePassword()}},
                         AccountLock::Locked);
}

bool CreateRoot(const SString& uid, const SString& address, const SString& domain) {
    return CreateAccount(uid,
                         {{"Name", "System Administrator"},
                          {"SMTP-Address", address},
                          {"SMTP-RewriteStyle", "comment"},
                          {"UNIX-UserName", "root"},
                          {"Local-Delivery", "UNIX"},
                          {"Access-Domains", domain},
                          {"Password", GeneratePassword()}},
                         AccountLock::Locked);
}

/// With its delivery, which it gets after it was made.
void NoteAgain(SAccountDBMod* accounts) {
    SAccount postmaster;
    if (!IsRecording()) return;
    if (accounts->Find("Postmaster", &postmaster) != Lookup::Found) return StopRecording();
    AccountBatch::NoteAgain({"Postmaster", AccountDigest(RecordKey(), postmaster)});
}

AdminAccountsOutcome Deliver(SAccountDBMod* accounts, const SString& root) {
    SAccountMod postmaster;
    if (accounts->ModifyAccount("Postmaster", &postmaster) == 0) return AdminAccountsOutcome::NotReopened;
    if (postmaster.Set("Account-Delivery", root) == 0) return AdminAccountsOutcome::NotDelivered;
    NoteAgain(accounts);
    return AdminAccountsOutcome::Done;
}

/// Commits only if every part succeeded.
AdminAccounts Make(SAccountDBMod* accounts, const SString& host, const SString& domain, bool deliver) {
    AccountBatch creation;
    AdminAccounts made;
    const SString address = "root@" + host;
    SString root;
    if (!creation.IsOpen() || !CreatePostmaster(host, domain)) return {AdminAccountsOutcome::NoPostmaster};
    const Lookup owner = accounts->FindOwner(address, &root);
    if (owner == Lookup::Failed) return {AdminAccountsOutcome::NoPostmaster};
    made.root_was_made = owner == Lookup::Missing;
    if (made.root_was_made) {
        root = GenerateAccountUID("Root");
        if (!CreateRoot(root, address, domain)) return {AdminAccountsOutcome::NoRoot, true};
    }
    if (deliver) made.outcome = Deliver(accounts, root);
    if (made.outcome == AdminAccountsOutcome::Done && !creation.Commit())
        made.outcome = AdminAccountsOutcome::NoPostmaster;
    return made;
}

}  // namespace

AdminAccounts MakeAdminAccounts(SAccountDBMod* accounts, const SString& host, const SString& domain) {
    AdminAccounts made = Make(accounts, host, domain, true);
    if (made.outcome != AdminAccountsOutcome::NotDelivered) return made;
    // Accounts without a delivery are better than none: the dialogue asks for deliveries next.
    made = Make(accounts, host, domain, false);
    if (made.outcome == AdminAccountsOutcome::Done) made.outcome = AdminAccountsOutcome::NotDelivered;
    return made;
}
