// Tells whether an account still has what it was left with.
#pragma once

#include "install/accounts/create_account.h"
#include "install/record/change.h"

/// A checksum over the lock and all fields with a value or more, in the order of their names, keyed with the
/// record's key: the same of the fields that an account is made with and of the account that is read back.
SString AccountDigest(const SString& key, const AccountFields& fields, AccountLock lock);
/// Of the account with these fields in place of its own.
SString AccountDigest(const SString& key, const SAccount& account, const AccountFields& changed = {});

/// Records that the account's fields are set next. Within the caller's transaction, if there is one.
void RecordEdit(const SString& uid, const AccountFields& changed);
