// Keeps one visitor at work, and replaces it.
#include "install/visits/visitor.h"

#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <thread>
#include <utility>

#include "install/visits/visitor_process.h"
#include "support/process/blocked_signals.h"
#include "support/process/child_process.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int kSlices = 10;
constexpr milliseconds kNap{2};
constexpr const char* kNotVisited = "Home directories were not visited below: ";
constexpr const char* kNotRepaired = "Maildrops were not repaired below: ";

}  // namespace

Visitor::Visitor(const SString& host, gid_t mail_group, milliseconds patience)
    : Visitor(SetUpVisits(host, mail_group), patience) {
    host_ = host;
}

Visitor::Visitor(VisitWork work, milliseconds patience) : work_(std::move(work)), patience_(patience) {
    Start();
}

Visitor::~Visitor() {
    End(requests_.empty());
}

void Visitor::Start() {
    auto child = std::make_unique<Child>();
    auto ends = MessageSocket::Pair();
    if (!ends || !child->progress.IsThere()) return;
    // The terminal's signals reach its whole group; the visitor never takes them.
    const BlockedSignals blocked(kTerminalSignals);
    child->id = StartChild([&] { ServeVisits(std::move(ends->second), work_, &*child->progress); });
    if (child->id < 0) return;
    child->socket = std::move(ends->first);
    child_ = std::move(child);
}

/// Waits only for an idle one, which may have been stopped with the terminal's job: another may not even obey
/// SIGKILL.
void Visitor::End(bool is_idle) {
    if (!child_) return;
    const pid_t id = child_->id;
    child_->socket.Shutdown();
    child_.reset();
    kill(id, is_idle ? SIGCONT : SIGKILL);
    waitpid(id, nullptr, is_idle ? 0 : WNOHANG);
}

void Visitor::Send(VisitRequest request) {
    requests_.push_back(std::move(request));
    Queue(requests_.back());
}

void Visitor::Queue(VisitRequest request) {
    Skip(&request.home, kNotVisited);
    Skip(&request.maildrop, kNotRepaired);
    if (child_) child_->socket.Queue(ToMessage(request));
}

/// An end of the visitor shows when it is waited for.
void Visitor::Transmit() {
    if (child_) child_->socket.Transfer(milliseconds(0));
}

void Visitor::StartAgain() {
    End(false);
    if (is_stopped_) return;
    Start();
    for (const VisitRequest& request : requests_) Queue(request);
}

/// False when the visitor has ended.
bool Visitor::Receive(milliseconds patience) {
    if (!child_) return false;
    bool is_there = true;
    auto message = child_->socket.Next();
    if (!message) {
        is_there = child_->socket.Transfer(patience);
        message = child_->socket.Next();
    }
    if (message) answer_ = AnswerFrom(*message);
    return message || is_there;
}

Visitor::Wait Visitor::Await(steady_clock::time_point until) {
    while (!answer_) {
        const auto rest = std::chrono::ceil<milliseconds>(until - steady_clock::now());
        if (!Receive(std::max(rest, milliseconds(0)))) return Wait::Ended;
        if (!answer_ && steady_clock::now() >= until) return Wait::TooLong;
    }
    return Wait::Answered;
}

/// In slices: if this process is stopped for a while (Ctrl-Z), that counts as one of them at most, and the
/// visitor, which was stopped, too, has the others.
Visitor::Wait Visitor::AwaitPatiently() {
    Wait outcome = Wait::TooLong;
    for (int slice = 0; slice < kSlices && outcome == Wait::TooLong; ++slice) {
        outcome = Await(steady_clock::now() + patience_ / kSlices);
    }
    return outcome;
}

bool Visitor::HasAnswer(steady_clock::time_point until) {
    Wait outcome = Await(steady_clock::now());
    while (outcome == Wait::TooLong && steady_clock::now() < until) {
        std::this_thread::sleep_until(std::min(until, steady_clock::now() + kNap));
        outcome = Await(steady_clock::now());
    }
    return outcome != Wait::TooLong;
}

VisitAnswer Visitor::Next() {
    if (!child_) return AnswerWithoutVisit();
    const Wait outcome = AwaitPatiently();
    if (outcome == Wait::Answered) return Finish(std::move(*answer_));
    return outcome == Wait::Ended && !was_tried_ && !is_stopped_ ? TryAgain() : GiveUp(outcome);
}

VisitAnswer Visitor::Finish(VisitAnswer answer) {
    requests_.pop_front();
    answer_.reset();
    was_tried_ = false;
    return answer;
}

VisitAnswer Visitor::AnswerWithoutVisit() {
    if (is_stopped_) return Finish({VisitEnd::Stopped});
    if (!requests_.front().home.IsEmpty()) Remind(SString(kNotVisited) + "/");
    if (!requests_.front().maildrop.IsEmpty()) Remind(SString(kNotRepaired) + "/");
    return Finish({VisitEnd::Unanswered});
}

/// The visitor may have ended for no fault of the home's: somebody killed it, or memory was short.
VisitAnswer Visitor::TryAgain() {
    was_tried_ = true;
    StartAgain();
    return Next();
}

VisitAnswer Visitor::GiveUp(Wait reason) {
    const VisitRequest& request = requests_.front();
    const SString place = child_->progress->Place();
    const bool is_at_maildrop = !request.maildrop.IsEmpty() && place == request.maildrop;
    const bool is_at_home = !request.home.IsEmpty() && place.StartsWith(request.home.Bytes());
    Remind(is_at_maildrop ? "Maildrop did not answer: " + request.maildrop
                          : "Home directory did not answer: " + request.home);
    // Of one that has not come to this visit, the place says nothing.
    if (reason == Wait::TooLong && (is_at_maildrop || is_at_home)) NoteSilence(place);
    VisitAnswer answer = Finish({VisitEnd::GivenUp, child_->progress->FoundMaildrop()});
    requests_.clear();
    StartAgain();
    return answer;
}

/// What a user's link leads to says nothing of others' homes.
void Visitor::NoteSilence(const SString& place) {
    if (child_->progress->IsBehindLink()) return;
    mounts_ = Mounts::Now();
    silent_points_.Push(mounts_->PointOf(place));
}

void Visitor::Stop() {
    is_stopped_ = true;
    if (child_) child_->progress->Stop();
}

void Visitor::Skip(SString* path, const SString& reminder) {
    if (path->IsEmpty() || silent_points_.IsEmpty()) return;
    const SString point = mounts_->PointOf(*path);
    if (!silent_points_.Contains(point)) return;
    Remind(reminder + point);
    *path = "";
}

void Visitor::Remind(const SString& reminder) {
    if (!reminders_.Contains(reminder)) reminders_.Push(reminder);
}
