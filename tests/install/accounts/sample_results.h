// What an account step may have done, for the tests of the mails that tell about it.
#pragma once

#include "install/accounts/account_results.h"

inline AccountResults SampleResults() {
    AccountResults results;
    results.uids_and_passwords = {"Ann_Lee bodil4", "Jones_Smith catin2"};
    results.created = {"Ann Lee (ann)", "Jones Smith (jones)"};
    results.failed = {"A B (a b)"};
    results.skipped_names = {"bin", "Nobody", "Long"};
    results.skipped_logins = {"bin", "nobody", "twelve-chars"};
    results.forward_users = {"ann@example.com", "jones@example.com"};
    return results;
}
