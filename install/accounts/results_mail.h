// The text of the mail that tells Postmaster what the account step did. Lines end in CR LF; what other people
// chose (names, logins, addresses) never makes a line of its own.
#pragma once

#include "install/accounts/account_results.h"

SString ResultsMailBody(const AccountResults& results);
