// The text of the mail that tells Postmaster what the account step did. Lines end in CR LF; a name, login or
// address, which users choose, cannot add lines to it.
#pragma once

#include "install/accounts/account_results.h"

SString ResultsMailBody(const AccountResults& results);
