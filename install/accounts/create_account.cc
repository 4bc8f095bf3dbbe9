// Writes a new account's fields and its lock.
#include "install/accounts/create_account.h"

#include "install/accounts/account_batch.h"
#include "install/accounts/account_digest.h"
#include "install/record/record.h"

bool CreateAccount(const SString& uid, const AccountFields& fields, AccountLock lock, size_t* refused) {
    SAccountDBMod accounts;
    SAccountMod account;
    // Another process may have made the account meanwhile: it is left alone.
    if (accounts.ModifyAccount(uid, &account) == 0 || !account.IsNew()) return false;
    for (size_t i = 0; i < fields.size(); ++i) {
        if (account.Set(fields[i].name, fields[i].values) != 0) continue;
        if (refused != nullptr) *refused = i;
        return false;
    }
    if (lock == AccountLock::Locked && account.Lock() == 0) return false;
    if (IsRecording()) AccountBatch::Note({uid, AccountDigest(RecordKey(), fields, lock)});
    return true;
}
