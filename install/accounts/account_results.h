// What the account step did, for the mails that tell about it.
#pragma once

#include "support/text/sstring_list.h"

struct AccountResults {
    bool accounts_existed = false;   // before the step
    SStringList uids_and_passwords;  // "UID PASSWORD" of each account created
    SStringList created;             // "Full Name (login)"
    SStringList failed;              // the same
    SStringList skipped_names;       // system users and users without a home: the full name
    SStringList skipped_logins;      // the login at the same index
    SStringList unanswered;          // reminders of homes and maildrops that did not answer
    SStringList forward_users;       // the first address of each user with a ".forward" file
};
