// Maildrops of many: given back the owners and modes that they had.
#include <algorithm>
#include <map>

#include "support/text/counted.h"
#include "support/text/printable.h"
#include "undo/mail_system/user_visits.h"
#include "undo/ways.h"

namespace {

SString OfThirdLogins(SStringList paths) {
    return "Not given back, as it belonged to neither root nor its user: " + FirstOf(std::move(paths));
}

bool HasWork(const change::MaildropGiven& given) {
    return MayGoBack(given) || given.is_replaced;
}

bool IsTold(UsersOutcome outcome) {
    return outcome != UsersOutcome::Back && outcome != UsersOutcome::Nothing &&
           outcome != UsersOutcome::NotVisited;
}

}  // namespace

Finding LookAt(const MaildropsGiven& change, const UndoneRun& /*run*/) {
    const auto count = static_cast<size_t>(std::ranges::count_if(change, HasWork));
    if (count > 0) {
        return {Standing::AsLeft,
                "Put owner and mode of " + Counted(count, "maildrop") + " back as they were"};
    }
    SStringList paths;
    for (const auto& given : change) paths.Push(Printable(given.path));
    return paths.IsEmpty() ? Finding() : Finding{Standing::Kept, OfThirdLogins(paths)};
}

TakenBack TakeBack(const MaildropsGiven& change, const UndoneRun& /*run*/) {
    // Backwards, as one may have been given twice.
    const auto given_at = [&change](size_t i) -> const auto& {
        return change[change.size() - 1 - i];
    };
    const Visited visited = VisitAll(change.size(), [&](size_t i) { return ToGiveBack(given_at(i)); });
    std::map<UsersOutcome, SStringList> paths;
    for (size_t i = 0; i < change.size(); ++i) {
        const UsersOutcome outcome = visited.outcomes[i];
        if (IsTold(outcome)) paths[outcome].Push(Printable(given_at(i).path));
    }

    TakenBack taken = {
        paths[UsersOutcome::Failed].IsEmpty() && visited.IsWhole(), {}, visited.is_interrupted};
    const auto tell = [&](UsersOutcome outcome, const SString& text) {
        if (!paths[outcome].IsEmpty()) taken.left.Push(text + FirstOf(paths[outcome]));
    };
    if (!paths[UsersOutcome::ThirdLogins].IsEmpty())
        taken.left.Push(OfThirdLogins(paths[UsersOutcome::ThirdLogins]));
    tell(UsersOutcome::Replaced, "Stays its user's, as the one from before was a third login's, and empty: ");
    tell(UsersOutcome::Changed, "No longer as Install left it, so left alone: ");
    tell(UsersOutcome::Failed, "Could not be given back: ");
    for (const SString& line : visited.silent) {
        taken.left.Push(Printable(line).S("^Maildrops were not repaired", "Maildrops were not given back"));
    }
    return taken;
}
