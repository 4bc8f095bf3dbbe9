// Maildrops of many: given back the owners and modes that they had.
#include <algorithm>
#include <iterator>

#include "support/text/counted.h"
#include "support/text/printable.h"
#include "undo/later_runs.h"
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

constexpr const char* kOfLaterRuns = "Given again by a later run: take that one back first: ";
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

bool IsLater(const change::MaildropGiven& given, const UndoneRun& run) {
    return run.later != nullptr && run.later->HaveGivenAgain(given);
}

/// Those that a later run has given again: it found them otherwise than this run left them.
SStringList OfLaterRuns(const MaildropsGiven& maildrops, const UndoneRun& run) {
    SStringList paths;
    for (const auto& given : maildrops) {
        if (IsLater(given, run)) paths.Push(WithAccessBefore(given));
    }
    return paths.IsEmpty() ? paths : kOfLaterRuns + FirstOf(paths);
}

MaildropsGiven OfThisRun(const MaildropsGiven& maildrops, const UndoneRun& run) {
    MaildropsGiven ours;
    std::ranges::copy_if(maildrops, std::back_inserter(ours),
                         [&](const auto& given) { return !IsLater(given, run); });
    return ours;
}

/// What is known of them without a look, which would cost a visit each.
Finding LookAt(const MaildropsGiven& change) {
    const auto count = static_cast<size_t>(std::ranges::count_if(change, HasWork));
    if (count > 0) {
        return {Standing::AsLeft,
                "Put owner and mode of " + Counted(count, "maildrop") + " back as they were"};
    }
    SStringList paths;
    for (const auto& given : change) paths.Push(WithAccessBefore(given));
    return paths.IsEmpty() ? Finding() : Finding{Standing::Kept, kOfThirdLogins + FirstOf(paths)};
}

TakenBack TakeBack(const MaildropsGiven& change) {
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

}  // namespace

Finding LookAt(const MaildropsGiven& change, const UndoneRun& run) {
    const SStringList later = OfLaterRuns(change, run);
    if (later.IsEmpty()) return LookAt(change);
    Finding finding = LookAt(OfThisRun(change, run));
    if (finding.standing != Standing::AsLeft) return {Standing::Later, later.Get(0)};
    finding.by_hand = later;
    return finding;
}

TakenBack TakeBack(const MaildropsGiven& change, const UndoneRun& run) {
    const SStringList later = OfLaterRuns(change, run);
    if (later.IsEmpty()) return TakeBack(change);
    TakenBack taken = TakeBack(OfThisRun(change, run));
    taken.left.Push(later);
    taken.is_known = false;
    return taken;
}
