// The messages of the account step, left in the queue: the greeting request, the results mail to Postmaster
// and the notice to users with ".forward" files, which tell people about their new accounts; and the request
// for a form, where no accounts are made.
//
// Nothing is printed: a message that cannot be written is withdrawn, and the others are still queued.
#pragma once

#include "install/accounts/account_results.h"

/// Queues those of the three messages about accounts that have something to say.
void QueueSetUpMails(const AccountResults& results, const SString& host);

/// Queues the request that sends the administrator a form for new accounts.
void SendNewAccountForm();
