// One user's mail account, made alone or within a batch.
#pragma once

#include "support/database/account.h"

struct NewAccount {
    SString full_name;
    SString login;
    SStringList addresses;
    SString access_domain;
    SString finger_info;
};

enum class AccountOutcome {
    Created,
    Exists,  // one of the addresses belongs to an account; nothing is changed
    Failed
};

/// Makes the account in a transaction of its own, which also keeps a second installer from making one for the
/// same addresses meanwhile. Where a field is refused, those in front of it stay written, and it has failed.
/// uid_and_password gets "UID PASSWORD" of an account that was created.
AccountOutcome MakeAccount(const NewAccount& account, SString* uid_and_password);

/// The same within the caller's transaction: what it gives holds once that is committed, and a refused field
/// takes back the whole batch.
AccountOutcome MakeAccountInBatch(const NewAccount& account, SString* uid_and_password);

/// Whether mail could be addressed to the login as it stands (an RFC 821 local part).
bool IsLocalPart(const SString& login);
