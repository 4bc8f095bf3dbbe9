#include "undo/mail_system/user_visits.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <thread>

#include "install/critical_section.h"
#include "install/visits/visitor.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr size_t kMostAhead = 1000;
constexpr size_t kMany = 1000;  // for which a second visitor is worth its start
constexpr size_t kMostVisitors = 4;
constexpr milliseconds kLook{1000};

/// Started when they are needed for the first time.
class Visitors {
  public:
    void StartFor(size_t requests);
    Visitor& For(const VisitRequest& request);
    void Transmit();
    SStringList Reminders() const;

  private:
    std::deque<Visitor> visitors_;
};

void Visitors::StartFor(size_t requests) {
    const size_t processors = std::max(1U, std::thread::hardware_concurrency());
    const size_t count = requests < kMany ? 1 : std::min(processors, kMostVisitors);
    while (visitors_.size() < count) visitors_.emplace_back(DoTask);
}

/// The same place is always the same visitor's.
Visitor& Visitors::For(const VisitRequest& request) {
    const std::string& place = (request.home.IsEmpty() ? request.maildrop : request.home).Bytes();
    return visitors_[std::hash<std::string>()(place) % visitors_.size()];
}

void Visitors::Transmit() {
    for (Visitor& visitor : visitors_) visitor.Transmit();
}

SStringList Visitors::Reminders() const {
    SStringList all;
    for (const Visitor& visitor : visitors_) {
        for (const SString& reminder : visitor.Reminders()) {
            if (!all.Contains(reminder)) all.Push(reminder);
        }
    }
    return all;
}

/// Requests that are sent ahead of the answers, which are taken in the same order.
class Round {
  public:
    Round(Visitors* visitors, size_t count, const std::function<VisitRequest(size_t)>& request)
        : visitors_(visitors), count_(count), request_(request) {}
    std::vector<UsersOutcome> Run();

  private:
    void SendAhead();
    Visitor* Send(size_t i);
    void SendAgain(const Visitor* visitor);
    UsersOutcome Next();

    Visitors* visitors_;
    size_t count_;
    const std::function<VisitRequest(size_t)>& request_;
    std::deque<Visitor*> sent_;  // whose answers are still to come
    size_t answered_ = 0;
};

/// Of all, or after a signal of those that were under way.
std::vector<UsersOutcome> Round::Run() {
    std::vector<UsersOutcome> outcomes;
    outcomes.reserve(count_);
    SendAhead();
    while (!sent_.empty()) {
        outcomes.push_back(Next());
        SendAhead();
    }
    return outcomes;
}

/// Many at once, which wakes a visitor once.
void Round::SendAhead() {
    if (sent_.size() > kMostAhead / 2 || CriticalSection::WasInterrupted()) return;
    while (sent_.size() < kMostAhead && answered_ + sent_.size() < count_) {
        sent_.push_back(Send(answered_ + sent_.size()));
    }
    visitors_->Transmit();
}

Visitor* Round::Send(size_t i) {
    VisitRequest request = request_(i);
    Visitor& visitor = visitors_->For(request);
    visitor.Send(std::move(request));
    return &visitor;
}

UsersOutcome Round::Next() {
    Visitor* visitor = sent_.front();
    // Looks now and then, which costs less than being woken.
    visitor->HasAnswer(steady_clock::now() + kLook);
    const VisitAnswer answer = visitor->Next();
    sent_.pop_front();
    ++answered_;
    if (answer.end == VisitEnd::GivenUp) SendAgain(visitor);
    return answer.end == VisitEnd::Visited ? static_cast<UsersOutcome>(answer.outcome)
                                           : UsersOutcome::NotVisited;
}

/// The visitor that has given one up has forgotten those that were to follow.
void Round::SendAgain(const Visitor* visitor) {
    for (size_t i = 0; i < sent_.size(); ++i) {
        if (sent_[i] == visitor) Send(answered_ + i);
    }
}

}  // namespace

bool Visited::IsWhole() const {
    return silent.IsEmpty() && !is_interrupted && std::ranges::count(outcomes, UsersOutcome::NotVisited) == 0;
}

Visited VisitAll(size_t count, const std::function<VisitRequest(size_t)>& request) {
    static Visitors visitors;
    visitors.StartFor(count);
    const SStringList told = visitors.Reminders();
    Visited visited;
    visited.outcomes = Round(&visitors, count, request).Run();
    for (const SString& reminder : visitors.Reminders()) {
        if (!told.Contains(reminder)) visited.silent.Push(reminder);
    }
    visited.is_interrupted = visited.outcomes.size() < count;
    visited.outcomes.resize(count, UsersOutcome::NotVisited);
    return visited;
}
