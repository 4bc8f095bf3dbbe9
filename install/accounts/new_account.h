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
    Exists,  // an account has one of the addresses; nothing is changed
    Failed
};

/// Makes the account in its own transaction, so that a second installer cannot take the addresses meanwhile.
/// If a field is refused, the result is Failed but the fields before it are kept (prescribed).
/// uid_and_password is set to "UID PASSWORD" of a created account.
AccountOutcome MakeAccount(const NewAccount& account, SString* uid_and_password);

/// The same within the caller's transaction: the result holds once that is committed. A refused field rolls
/// back the whole batch.
AccountOutcome MakeAccountInBatch(const NewAccount& account, SString* uid_and_password);

/// Whether the login is a valid RFC 821 local part without quoting.
bool IsLocalPart(const SString& login);
