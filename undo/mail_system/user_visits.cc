#include "undo/mail_system/user_visits.h"

#include <algorithm>

#include "install/visits/visitor.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr size_t kMostAhead = 1000;
constexpr milliseconds kLook{1000};

constexpr const char* kNotice = "notice";
constexpr const char* kMaildrop = "maildrop";

template <typename Number>
Number Shift(SStringList* task) {
    return static_cast<Number>(task->Shift().ToNumber());
}

NoticeOfRun NoticeFrom(SStringList task) {
    NoticeOfRun notice;
    notice.host = task.Shift();
    notice.begun = Shift<int64_t>(&task);
    notice.next = Shift<int64_t>(&task);
    return notice;
}

change::MaildropGiven GivenFrom(const SString& path, SStringList task) {
    change::MaildropGiven given;
    given.path = path;
    given.before.owner = Shift<uid_t>(&task);
    given.before.group = Shift<gid_t>(&task);
    given.before.mode.bits = Shift<mode_t>(&task);
    given.before.access_list = task.Shift();
    given.user = Shift<uid_t>(&task);
    given.mail_group = Shift<gid_t>(&task);
    given.is_replaced = Shift<int>(&task) != 0;
    given.process = Shift<int64_t>(&task);
    return given;
}

UsersOutcome Do(const VisitRequest& request, ManyUsers* users, VisitProgress* progress) {
    SStringList task = request.task;
    const SString kind = task.Shift();
    if (kind == kNotice && !request.home.IsEmpty()) {
        return RemoveNotice(request.home, request.user, NoticeFrom(task), users, progress);
    }
    if (kind == kMaildrop && !request.maildrop.IsEmpty()) {
        progress->LookAt(request.maildrop);
        return GiveBack(GivenFrom(request.maildrop, task));
    }
    return UsersOutcome::NotVisited;  // it lies where nothing answers
}

VisitAnswer Visit(const VisitRequest& request, ManyUsers* users, VisitProgress* progress) {
    VisitAnswer answer;
    answer.end = VisitEnd::Visited;
    answer.outcome = static_cast<int64_t>(Do(request, users, progress));
    return answer;
}

/// Requests that are sent ahead of the answers.
class Round {
  public:
    Round(Visitor* visitor, const std::vector<VisitRequest>& requests)
        : visitor_(visitor), requests_(requests) {}
    std::vector<UsersOutcome> Run();

  private:
    void SendAhead();
    UsersOutcome Next();

    Visitor* visitor_;
    const std::vector<VisitRequest>& requests_;
    size_t sent_ = 0;
    size_t answered_ = 0;
};

std::vector<UsersOutcome> Round::Run() {
    std::vector<UsersOutcome> outcomes;
    while (answered_ < requests_.size()) {
        SendAhead();
        outcomes.push_back(Next());
    }
    return outcomes;
}

/// Many at once, which wakes the visitor once.
void Round::SendAhead() {
    if (sent_ - answered_ > kMostAhead / 2 || sent_ == requests_.size()) return;
    while (sent_ < requests_.size() && sent_ - answered_ < kMostAhead) visitor_->Send(requests_[sent_++]);
    visitor_->Transmit();
}

UsersOutcome Round::Next() {
    visitor_->HasAnswer(steady_clock::now() +
                        kLook);  // looks now and then, which costs less than being woken
    const VisitAnswer answer = visitor_->Next();
    ++answered_;
    if (answer.end == VisitEnd::GivenUp) sent_ = answered_;
    return answer.end == VisitEnd::Visited ? static_cast<UsersOutcome>(answer.outcome)
                                           : UsersOutcome::NotVisited;
}

}  // namespace

VisitRequest ToRemoveNotice(const SString& home, const Identity& user, const NoticeOfRun& notice) {
    return {"", home, user, {kNotice, notice.host, notice.begun, notice.next}};
}

VisitRequest ToGiveBack(const change::MaildropGiven& given) {
    const change::Access& before = given.before;
    return {given.path,
            "",
            {},
            {kMaildrop, before.owner, before.group, before.mode.bits, before.access_list, given.user,
             given.mail_group, static_cast<int>(given.is_replaced), given.process}};
}

Visited VisitAll(const std::vector<VisitRequest>& requests) {
    static Visitor visitor(Visit);
    const size_t told = visitor.Reminders().Count();
    Visited visited;
    visited.outcomes = Round(&visitor, requests).Run();
    visited.silent = visitor.Reminders();
    visited.silent.Splice(0, static_cast<int>(told));
    return visited;
}
