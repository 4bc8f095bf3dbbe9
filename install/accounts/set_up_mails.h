// The messages that tell people about their new accounts, left in the queue: the greeting request, the
// results mail to Postmaster and the notice to users with ".forward" files.
//
// Nothing is printed: a message that cannot be written is withdrawn, and the others are still queued.
#pragma once

#include "install/accounts/account_results.h"

/// Queues those of the three messages that have something to say.
void QueueSetUpMails(const AccountResults& results, const SString& host);
