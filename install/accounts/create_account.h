// Creates an account: the only way that the special accounts, the users, Postmaster and Root get theirs.
//
//     AccountBatch batch;
//     if (CreateAccount("Jones_Smith", {{"Name", "Jones Smith"}}, AccountLock::Open)) batch.Commit();
#pragma once

#include <vector>

#include "support/database/account.h"

struct AccountField {
    const char* name;
    SStringList values;
};
using AccountFields = std::vector<AccountField>;

enum class AccountLock { Open, Locked };

/// Creates the account within the caller's batch, its fields in order, then its lock. False if the
/// database refused any of it or the account exists, which is never overwritten. If a field was refused,
/// *refused (unless null) is set to its index.
bool CreateAccount(const SString& uid, const AccountFields& fields, AccountLock lock,
                   size_t* refused = nullptr);
