// Notices in the homes of many: removed where they are as the run left them.
#include <algorithm>
#include <limits>
#include <set>

#include "install/accounts/login_index.h"
#include "support/system/clock.h"
#include "support/text/counted.h"
#include "support/text/printable.h"
#include "undo/mail_system/user_visits.h"
#include "undo/ways.h"

namespace {

using change::NoticesLeft;

NoticeOfRun NoticeOf(const NoticesLeft& change, const UndoneRun& run) {
    constexpr int64_t kNever = std::numeric_limits<int64_t>::max();
    return {change.host, TimeOfUniversal(run.begun).value_or(kNever),
            TimeOfUniversal(run.next).value_or(kNever)};
}

/// As the login is now; nothing if it is gone, or another's.
std::optional<Identity> Find(const change::Home& home, LoginIndex* logins) {
    auto user = logins->Find(home.login);
    return user && user->uid == home.uid ? user : std::nullopt;
}

SString NoticeIn(const change::Home& home) {
    return Printable((home.path[-1] == '/' ? home.path : home.path + "/") + ".forward.NOTICE");
}

struct VisitedHome {
    const change::Home* home;
    Identity user;
};

/// The homes that are visited, and what came of them.
class Removal {
  public:
    Removal(const NoticesLeft& change, const UndoneRun& run);
    TakenBack Run();

  private:
    void NoteBack(const std::vector<UsersOutcome>& outcomes);
    void Note(const change::Home& home, UsersOutcome outcome);

    NoticeOfRun notice_;
    std::vector<VisitedHome> homes_;
    std::set<SString> back_;  // homes
    SStringList strangers_;
    SStringList changed_;
    SStringList failed_;
};

Removal::Removal(const NoticesLeft& change, const UndoneRun& run) : notice_(NoticeOf(change, run)) {
    LoginIndex logins;
    logins.Refresh();
    for (const change::Home& home : change.homes) {
        if (auto user = Find(home, &logins)) {
            homes_.push_back({&home, std::move(*user)});
        } else {
            strangers_.Push(Printable(home.login));
        }
    }
}

/// Of one home of several logins, the notice is as left for one of them only, who owns it.
void Removal::NoteBack(const std::vector<UsersOutcome>& outcomes) {
    for (size_t i = 0; i < homes_.size(); ++i) {
        if (outcomes[i] == UsersOutcome::Back) back_.insert(homes_[i].home->path);
    }
}

void Removal::Note(const change::Home& home, UsersOutcome outcome) {
    if (outcome == UsersOutcome::Changed && !back_.contains(home.path)) changed_.Push(NoticeIn(home));
    if (outcome == UsersOutcome::Failed) failed_.Push(NoticeIn(home));
}

TakenBack Removal::Run() {
    const Visited visited = VisitAll(homes_.size(), [this](size_t i) {
        return ToRemoveNotice(homes_[i].home->path, homes_[i].user, notice_);
    });
    if (std::ranges::count(visited.outcomes, UsersOutcome::Changed) > 0) NoteBack(visited.outcomes);
    for (size_t i = 0; i < homes_.size(); ++i) Note(*homes_[i].home, visited.outcomes[i]);
    TakenBack taken = {failed_.IsEmpty() && visited.IsWhole(), {}, visited.is_interrupted};
    if (!changed_.IsEmpty()) taken.left.Push("No longer as Install left it, so kept: " + FirstOf(changed_));
    if (!strangers_.IsEmpty()) {
        taken.left.Push("Not looked for a notice, as the login is gone or has another id: " +
                        FirstOf(strangers_));
    }
    if (!failed_.IsEmpty()) taken.left.Push("Could not be removed: " + FirstOf(failed_));
    for (const SString& line : visited.silent) taken.left.Push(Printable(line));
    return taken;
}

}  // namespace

Finding LookAt(const NoticesLeft& change, const UndoneRun& /*run*/) {
    if (change.homes.empty()) return {};
    return {Standing::AsLeft, "Remove the notices in " + Counted(change.homes.size(), "home")};
}

TakenBack TakeBack(const NoticesLeft& change, const UndoneRun& run) {
    return Removal(change, run).Run();
}
