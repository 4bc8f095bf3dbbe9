// An account in which the run stored something: one that was there keeps it, and is named. (One that the run
// made itself goes with made_accounts.cc, or stays as a whole.)
#include <algorithm>

#include "support/database/account.h"
#include "support/text/printable.h"
#include "undo/mail_system/changes_of.h"
#include "undo/ways.h"

namespace {

using change::AccountEdited;

bool IsOfThisRun(const SString& uid, const UndoneRun& run) {
    bool is_made = false;
    EachOf<change::AccountsMade>(run, [&](const auto& made) {
        is_made |= std::ranges::find(made.accounts, uid, &change::Account::uid) != made.accounts.end();
    });
    return is_made;
}

}  // namespace

Finding LookAt(const AccountEdited& change, const UndoneRun& run) {
    const SString& uid = change.account.uid;
    if (IsOfThisRun(uid, run) || SAccountDB().Find(uid) == Lookup::Missing) return {};
    return {Standing::Kept, "The account " + Printable(uid) +
                                " was there before, and keeps what Install stored in it: " +
                                Printable(change.fields.Join(", "))};
}

TakenBack TakeBack(const AccountEdited& change, const UndoneRun& run) {
    const Finding finding = LookAt(change, run);
    return finding.standing == Standing::AsBefore ? TakenBack() : TakenBack{true, finding.text};
}
