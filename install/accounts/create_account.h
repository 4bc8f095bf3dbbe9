// Creating an account: the one way in which the special accounts, the users, Postmaster and Root get theirs.
//
//     AccountTransaction transaction;
//     if (CreateAccount("Jones_Smith", {{"Name", "Jones Smith"}}, AccountLock::Open)) transaction.Commit();
#pragma once

#include <vector>

#include "support/database/account.h"

struct AccountField {
    const char* name;
    SStringList values;
};
using AccountFields = std::vector<AccountField>;

enum class AccountLock { Open, Locked };

/// Creates the account within the caller's transaction, its fields in their order, then its lock. False when
/// the database refused any of it, or the account exists: it is never written over. *refused, if any, becomes
/// the index of a field that was refused.
bool CreateAccount(const SString& uid, const AccountFields& fields, AccountLock lock,
                   size_t* refused = nullptr);
