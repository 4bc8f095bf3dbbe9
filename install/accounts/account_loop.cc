// Works through the candidates, the first one by one and the rest in batches.
#include "install/accounts/account_loop.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "install/accounts/account_batch.h"
#include "install/console.h"
#include "install/critical_section.h"
#include "install/record/record.h"
#include "support/text/printable.h"

namespace {

// The first logins are printed as they are done. Later ones share a commit, which is the slowest part.
constexpr size_t kLoginsOneByOne = 100;
constexpr std::chrono::milliseconds kBatchTime{20};
constexpr size_t kMostTogether = 250;            // accounts in a batch
constexpr size_t kMostAhead = 1000;              // visits under way
constexpr size_t kBatchBytes = size_t{1} << 20;  // of finger information, whose size users choose

SString OutcomeText(AccountOutcome outcome) {
    switch (outcome) {
        case AccountOutcome::Created:
            return "created\n";
        case AccountOutcome::Exists:
            return "already exists\n";
        case AccountOutcome::Failed:
            break;
    }
    return "Error: couldn't create the account!\n";
}

Candidate TakeFirst(std::deque<Candidate>* candidates) {
    Candidate first = std::move(candidates->front());
    candidates->pop_front();
    return first;
}

/// A login with a slash would lead out of the maildrop directory.
bool IsFileName(const SString& login) {
    return login.Index('/') < 0;
}

}  // namespace

void AccountLoop::Run(std::deque<Candidate> candidates) {
    const AccountSession session(EndingSignals::Handled);  // the caller's critical section does
    size_t shown = 0;
    while (!candidates.empty() || !sent_.empty()) {
        if (CriticalSection::WasInterrupted()) {
            FinishVisited();
            Print("\nInterrupted.\n\n");
            break;
        }
        if (shown < kLoginsOneByOne) {
            RunOne(TakeFirst(&candidates));
            ++shown;
        } else {
            RunMany(&candidates);
        }
    }
    results_->unanswered = visitor_->Reminders();
}

void AccountLoop::RunOne(const Candidate& candidate) {
    logins_.Refresh();
    if (!Send(candidate)) return;
    RecordNotices();
    Print(LineBeginning(candidate));
    Visits visits = {*Take()};
    Print(AlertText(visits.front()));
    Write(&visits);
    Print(OutcomeText(visits.front().outcome));
}

void AccountLoop::RunMany(std::deque<Candidate>* candidates) {
    SendAhead(candidates);
    if (sent_.empty()) return;
    Visits visits = TakeSome(candidates);
    WriteAndPrint(&visits);
}

/// After an interrupt: their users have the notice already.
void AccountLoop::FinishVisited() {
    visitor_->Stop();
    Visits visits;
    while (!sent_.empty()) {
        if (auto visit = Take()) visits.push_back(std::move(*visit));
    }
    WriteAndPrint(&visits);
}

/// False if the host does not know the login any more.
bool AccountLoop::Send(const Candidate& candidate) {
    const auto user = logins_.Find(candidate.login);
    if (!user && !logins_.HasFailed()) return false;
    VisitRequest request;
    if (user && IsFileName(candidate.login)) {
        request = {MaildropPath(candidate.login), candidate.home, *user};
    }
    if (!request.home.IsEmpty() && IsRecording()) {
        homes_.push_back({candidate.login, candidate.home, user->uid, user->gid});
    }
    visitor_->Send(std::move(request));
    sent_.push_back({candidate, user.has_value()});
    return true;
}

/// Many at once, and early enough: the visitor works on during a batch.
void AccountLoop::SendAhead(std::deque<Candidate>* candidates) {
    if (sent_.size() > ahead_ / 2 || candidates->empty()) return;
    logins_.Refresh();
    while (sent_.size() < ahead_ && !candidates->empty()) Send(TakeFirst(candidates));
    RecordNotices();
    visitor_->Transmit();
}

/// Those who were to come next may have vanished, or changed their ids.
void AccountLoop::SendAgain() {
    logins_.Refresh();
    for (const Sent& sent : std::exchange(sent_, {})) Send(sent.candidate);
    RecordNotices();
}

/// In one line, before the visitor hears of any.
void AccountLoop::RecordNotices() {
    if (homes_.empty()) return;
    RecordWithoutSync(change::NoticesLeft{visitor_->Host(), std::exchange(homes_, {})});
}

/// Homes are visited before the transaction: a slow file server must not hold the lock.
AccountLoop::Visits AccountLoop::TakeSome(std::deque<Candidate>* candidates) {
    Visits visits;
    size_t bytes = 0;
    const auto end = std::chrono::steady_clock::now() + kBatchTime;
    const auto has_room = [&] {
        return visits.size() < kMostTogether && bytes < kBatchBytes && std::chrono::steady_clock::now() < end;
    };
    do {
        visits.push_back(*Take());
        bytes += visits.back().account.finger_info.Length();
        SendAhead(candidates);
    } while (has_room() && !sent_.empty() && !CriticalSection::WasInterrupted() && visitor_->HasAnswer(end));
    // Where homes are slow, the ids of those far ahead would be old when their turn comes.
    ahead_ = std::clamp(4 * visits.size(), kLeastAhead, kMostAhead);
    return visits;
}

/// Nothing if the visit did not begin before the end.
std::optional<AccountLoop::Visit> AccountLoop::Take() {
    Visit visit;
    visit.candidate = std::move(sent_.front().candidate);
    visit.is_known = sent_.front().is_known;
    sent_.pop_front();
    const Candidate& candidate = visit.candidate;
    VisitAnswer answer = visitor_->Next();
    if (answer.end == VisitEnd::GivenUp) SendAgain();
    if (answer.end == VisitEnd::Stopped) return std::nullopt;
    visit.maildrop = IsFileName(candidate.login) ? answer.maildrop : Maildrop::Suspicious;
    visit.account = {candidate.full_name, candidate.login, Addresses(candidate.login), site_.access_domain,
                     std::move(answer.finger_info)};
    // A login that is no valid address cannot be mailed.
    if (answer.has_forward && IsLocalPart(candidate.login)) {
        results_->forward_users.Push(visit.account.addresses.Get(0));
    }
    return visit;
}

SStringList AccountLoop::Addresses(const SString& login) const {
    SStringList addresses;
    for (const SString& domain : site_.mail_domains) addresses.Push(login + "@" + domain);
    return addresses;
}

/// Of a login of which the host could not tell, none.
void AccountLoop::MakeAccounts(Make make, Visits* visits) {
    for (Visit& visit : *visits) {
        if (visit.is_known) visit.outcome = make(visit.account, &visit.uid_and_password);
    }
}

/// All accounts in one transaction. False if a refusal rolled it back. True if the lock could not be had:
/// each login alone would wait 5 s for it again.
bool AccountLoop::WriteTogether(Visits* visits) {
    AccountBatch transaction;
    MakeAccounts(MakeAccountInBatch, visits);
    return transaction.Commit() || !transaction.IsOpen();
}

void AccountLoop::Write(Visits* visits) {
    if (visits->size() == 1 || !WriteTogether(visits)) {
        MakeAccounts(MakeAccount, visits);
    }
    for (const Visit& visit : *visits) Record(visit);
}

void AccountLoop::WriteAndPrint(Visits* visits) {
    if (visits->empty()) return;
    Write(visits);
    SString lines;
    for (const Visit& visit : *visits) {
        lines += LineBeginning(visit.candidate) + AlertText(visit) + OutcomeText(visit.outcome);
    }
    Print(lines);
}

void AccountLoop::Record(const Visit& visit) {
    const SString user = visit.account.full_name + " (" + visit.account.login + ")";
    if (visit.outcome == AccountOutcome::Failed) results_->failed.Push(user);
    if (visit.outcome != AccountOutcome::Created) return;
    results_->uids_and_passwords.Push(visit.uid_and_password);
    results_->created.Push(user);
}

SString AccountLoop::LineBeginning(const Candidate& candidate) const {
    return "    " + Printable(candidate.login + "@" + site_.mail_domains.Get(0)) + " (" +
           Printable(candidate.full_name) + ")....";
}

SString AccountLoop::AlertText(const Visit& visit) const {
    if (visit.maildrop == Maildrop::Fine) return "";
    return "\nALERT: Possible security problem with " + Printable(MaildropPath(visit.candidate.login)) + "\n";
}
