// One user's mail account, written to the account database whole or not at all.
#pragma once

#include "support/database/account.h"

struct NewAccount {
    SString full_name;
    SString login;
    SStringList addresses;
    SString access_domain;
    SString finger_info;
};

enum class Outcome {
    Created,
    Exists,  // one of the addresses belongs to an account; nothing is changed
    Failed
};

/// Makes the account in a transaction of its own or within the caller's, which also keeps a second installer
/// from making one for the same addresses meanwhile. Fields in front of a refused one stay written.
/// uid_and_password gets "UID PASSWORD" of an account that was made.
Outcome MakeAccount(const NewAccount& account, SString* uid_and_password);

/// Whether mail could be addressed to the login as it stands (an RFC 821 local part).
bool IsLocalPart(const SString& login);
