// Makes the account "Postmaster" and, if no account has root's address, "Root". Both are locked and get a
// generated password. Existing accounts are never overwritten.
#pragma once

#include "support/database/account.h"

enum class AdminAccountsOutcome {
    Done,
    NotDelivered,  // the accounts are made, but Postmaster's mail goes nowhere
    NoPostmaster,  // from here on, nothing was written
    NoRoot,
    NotReopened,  // Postmaster's account could not be bound again to add root
};

struct AdminAccounts {
    AdminAccountsOutcome outcome = AdminAccountsOutcome::Done;
    bool root_was_made = false;
};

/// Makes Postmaster's account, its mail going to the owner of root's address; if there is none, makes root's
/// account under the UID "Root", or "Root1" and so on. All in one transaction: the next run would take the
/// half-made Postmaster of a killed run for one that was set up.
AdminAccounts MakeAdminAccounts(SAccountDBMod* accounts, const SString& host, const SString& domain);
