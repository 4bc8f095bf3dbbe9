// Queues the messages of the account step: the greeting request, the results mail to Postmaster, the notice
// to users with ".forward" files, and the request for an account form.
//
// Failures are silent (prescribed): a message that cannot be written is withdrawn, the others are still
// queued.
#pragma once

#include "install/accounts/account_results.h"

/// Queues the greeting request, the results mail and the notice, leaving out those with nothing to report.
void QueueSetUpMails(const AccountResults& results, const SString& host);

/// Queues the request that sends the administrator a form for new accounts.
void SendNewAccountForm();
