// Making the accounts "Postmaster" and, where the host's root user has none, "Root". Both are locked and get
// a generated password. Neither is ever written over an account that exists.
#pragma once

#include "support/database/account.h"

enum class AdminAccountsOutcome {
    Done,
    NotDelivered,  // the accounts stand, but the Postmaster's mail goes nowhere
    NoPostmaster,  // here and below, nothing stands
    NoRoot,
    NotReopened,  // the Postmaster's account, once root's was made
};

struct AdminAccounts {
    AdminAccountsOutcome outcome = AdminAccountsOutcome::Done;
    bool root_was_made = false;
};

/// Makes the Postmaster's account, its mail going to the account that owns root's address; where there is
/// none, root's account is made under the UID "Root", or a free one like it. All become lasting at once, so
/// that a run that is killed never leaves a Postmaster whom the next run takes for one that was set up.
AdminAccounts MakeAdminAccounts(SAccountDBMod* accounts, const SString& host, const SString& domain);
