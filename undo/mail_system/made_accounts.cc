// Accounts that the run made: deleted when asked for, as long as they are as the run left them.
#include <algorithm>
#include <unordered_map>
#include <vector>

#include "install/accounts/account_digest.h"
#include "install/critical_section.h"
#include "support/database/account.h"
#include "support/text/counted.h"
#include "support/text/printable.h"
#include "undo/mail_system/changes_of.h"
#include "undo/ways.h"

namespace {

using change::AccountsMade;

constexpr size_t kTogether = 1000;  // a transaction's

/// By UID: what the run may have left of it, which went on to edit some.
using Digests = std::unordered_map<std::string, std::vector<SString>>;

Digests DigestsOf(const AccountsMade& change, const UndoneRun& run) {
    Digests digests;
    for (const change::Account& account : change.accounts) {
        digests[account.uid.Bytes()].push_back(account.digest);
    }
    EachOf<change::AccountEdited>(run, [&](const auto& edited) {
        const auto made = digests.find(edited.account.uid.Bytes());
        if (made != digests.end()) made->second.push_back(edited.account.digest);
    });
    return digests;
}

/// In batches; what became of the accounts.
class Deletion {
  public:
    Deletion(const AccountsMade& change, const UndoneRun& run)
        : accounts_(change.accounts), digests_(DigestsOf(change, run)), key_(run.key) {}
    void Run();
    TakenBack Outcome() const;

  private:
    void DeleteSome(size_t from, size_t to);
    bool IsAsLeft(const SAccount& account) const;

    const std::vector<change::Account>& accounts_;
    Digests digests_;
    SString key_;
    SStringList changed_;
    size_t failed_ = 0;
    bool is_interrupted_ = false;  // by a signal, between batches
};

void Deletion::Run() {
    const AccountSession session;
    for (size_t from = 0; from < accounts_.size() && !is_interrupted_; from += kTogether) {
        const size_t to = std::min(from + kTogether, accounts_.size());
        DeleteSome(from, to);
        is_interrupted_ = CriticalSection::WasInterrupted() && to < accounts_.size();
    }
    if (!SyncAccounts()) failed_ = std::max(failed_, size_t{1});
}

/// Looked at within the transaction, so that nobody changes one in between.
void Deletion::DeleteSome(size_t from, size_t to) {
    AccountTransaction transaction;
    SAccountDBMod database;
    size_t failed = 0;
    for (size_t i = from; i < to && transaction.IsOpen(); ++i) {
        SAccount account;
        const Lookup found = database.Find(accounts_[i].uid, &account);
        failed += found == Lookup::Failed ? 1 : 0;
        if (found != Lookup::Found) continue;
        if (IsAsLeft(account)) {
            database.DeleteAccount(account.Uid());
        } else {
            changed_.Push(Printable(account.Uid()));
        }
    }
    failed_ += transaction.Commit() ? failed : to - from;
}

bool Deletion::IsAsLeft(const SAccount& account) const {
    const auto digests = digests_.find(account.Uid().Bytes());
    return digests != digests_.end() &&
           std::ranges::find(digests->second, AccountDigest(key_, account)) != digests->second.end();
}

TakenBack Deletion::Outcome() const {
    TakenBack taken = {failed_ == 0 && !is_interrupted_, {}, is_interrupted_};
    if (!changed_.IsEmpty()) {
        taken.left.Push("Changed since, so kept: " + Counted(changed_.Count(), "account") + " (" +
                        FirstOf(changed_) + ")");
    }
    if (failed_ > 0) {
        taken.left.Push(Counted(failed_, "account") +
                        " could not be deleted: the database is in use, or the disk refused it");
    }
    return taken;
}

/// Found out with the first one, mostly: there may be a hundred thousand.
bool IsAnyThere(const AccountsMade& change) {
    const AccountSession session;
    SAccountDB database;
    return std::ranges::any_of(change.accounts, [&](const change::Account& account) {
        return database.Find(account.uid) != Lookup::Missing;
    });
}

}  // namespace

Finding LookAt(const AccountsMade& change, const UndoneRun& run) {
    if (!IsAnyThere(change)) return {};
    const size_t count = change.accounts.size();
    const SString accounts = Counted(count, "account");
    if (!run.options.accounts) {
        return {Standing::Kept, accounts + (count == 1 ? " stays" : " stay") + " (--accounts takes " +
                                    (count == 1 ? "it" : "them") + " back)"};
    }
    if (run.key.IsEmpty()) {
        return {Standing::Unknown,
                "Whether " + accounts + " changed since cannot be told, as the record's key is lost: kept"};
    }
    return {Standing::AsLeft, "Delete " + accounts + ", if not changed since"};
}

TakenBack TakeBack(const AccountsMade& change, const UndoneRun& run) {
    if (!run.options.accounts || run.key.IsEmpty()) return {};
    Deletion deletion(change, run);
    deletion.Run();
    return deletion.Outcome();
}
