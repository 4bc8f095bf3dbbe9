#include "install/accounts/account_batch.h"

#include <utility>

#include "install/record/record.h"
#include "support/database/database_file.h"
#include "support/system/file.h"

namespace {

// As there is one transaction at a time.
std::vector<change::Account> noted;

/// The transaction makes the database where there is none.
AccountTransaction Begun() {
    const SString file = DatabasePath("MTA-Accounts");
    if (IsRecording() && !EntryExists(file)) RecordChange(change::DatabaseMade{file, ""});
    return AccountTransaction();
}

}  // namespace

AccountBatch::AccountBatch() : transaction_(Begun()) {}

AccountBatch::~AccountBatch() {
    noted.clear();
}

bool AccountBatch::Commit() {
    if (!noted.empty()) RecordWithoutSync(change::AccountsMade{std::exchange(noted, {})});
    return transaction_.Commit();
}

void AccountBatch::Note(change::Account account) {
    noted.push_back(std::move(account));
}

void AccountBatch::NoteAgain(const change::Account& account) {
    std::erase_if(noted, [&](const change::Account& other) { return other.uid == account.uid; });
    noted.push_back(account);
}
