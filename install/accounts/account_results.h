// What the account step did, for the mails that tell about it.
#pragma once

#include "support/text/sstring_list.h"

struct AccountResults {
    bool accounts_existed = false;   // before the step
    SStringList uids_and_passwords;  // of each account made: its UID, a blank, its password
    SStringList created;             // "Full Name (login)"
    SStringList failed;              // the same, of accounts that could not be written
    SStringList skipped_names;       // system users and users without a home: the full name
    SStringList skipped_logins;      // index for index with them
    SStringList forward_users;       // the first address of each user with a ".forward" file
};
