// Maildrops of many: given back the owners and modes that they had.
#include <algorithm>

#include "support/text/counted.h"
#include "support/text/printable.h"
#include "undo/mail_system/user_visits.h"
#include "undo/octal.h"
#include "undo/ways.h"

namespace {

/// Told with each that is not as it was, for chown and chmod.
SString WithAccessBefore(const change::MaildropGiven& given) {
    const change::Access& before = given.before;
    return Printable(given.path) + " (before: owner " + SString(before.owner) + ", group " +
           SString(before.group) + ", mode " + Octal(before.mode.bits) +
           (before.access_list.IsEmpty() ? ")" : ", with an access list)");
}

constexpr const char* kOfThirdLogins = "Not given back, as it belonged to neither root nor its user: ";

struct Told {
    UsersOutcome outcome;
    const char* text;
};

constexpr Told kTold[] = {
    {UsersOutcome::ThirdLogins, kOfThirdLogins},
    {UsersOutcome::Replaced, "Stays its user's, as the one from before was a third login's, and empty: "},
    {UsersOutcome::BackWithoutSetId,
     "Given back without set-user-ID and set-group-ID, as its user may have written in it: "},
    {UsersOutcome::Changed, "No longer as Install left it, so left alone: "},
    {UsersOutcome::Failed, "Could not be given back: "},
};

/// The last one first, as one may have been given twice.
const change::MaildropGiven& Backwards(const MaildropsGiven& maildrops, size_t i) {
    return maildrops[maildrops.size() - 1 - i];
}

SStringList ThoseWith(UsersOutcome outcome, const MaildropsGiven& maildrops, const Visited& visited) {
    SStringList those;
    for (size_t i = 0; i < maildrops.size(); ++i) {
        if (visited.outcomes[i] == outcome) those.Push(WithAccessBefore(Backwards(maildrops, i)));
    }
    return those;
}

bool HasWork(const change::MaildropGiven& given) {
    return MayGoBack(given) || given.is_replaced;
}

}  // namespace

Finding LookAt(const MaildropsGiven& change, const UndoneRun& /*run*/) {
    const auto count = static_cast<size_t>(std::ranges::count_if(change, HasWork));
    if (count > 0) {
        return {Standing::AsLeft,
                "Put owner and mode of " + Counted(count, "maildrop") + " back as they were"};
    }
    SStringList paths;
    for (const auto& given : change) paths.Push(WithAccessBefore(given));
    return paths.IsEmpty() ? Finding() : Finding{Standing::Kept, kOfThirdLogins + FirstOf(paths)};
}

TakenBack TakeBack(const MaildropsGiven& change, const UndoneRun& /*run*/) {
    const Visited visited =
        VisitAll(change.size(), [&change](size_t i) { return ToGiveBack(Backwards(change, i)); });
    const bool has_failed = std::ranges::count(visited.outcomes, UsersOutcome::Failed) > 0;
    TakenBack taken = {!has_failed && visited.IsWhole(), {}, visited.is_interrupted};
    for (const Told& told : kTold) {
        const SStringList those = ThoseWith(told.outcome, change, visited);
        if (!those.IsEmpty()) taken.left.Push(told.text + FirstOf(those));
    }
    for (const SString& line : visited.silent) {
        taken.left.Push(Printable(line).S("^Maildrops were not repaired", "Maildrops were not given back"));
    }
    return taken;
}
