// Works through the candidates, the first one by one and the rest in batches.
#include "install/accounts/account_loop.h"

#include <chrono>

#include "install/accounts/forward_notice.h"
#include "install/console.h"
#include "install/critical_section.h"
#include "support/text/printable.h"

namespace {

// The first logins are printed as they are done. Later ones share a commit, which is the slowest part.
constexpr size_t kLoginsOneByOne = 100;
constexpr std::chrono::milliseconds kBatchTime{20};
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
    while (!candidates.empty()) {
        if (CriticalSection::WasInterrupted()) {
            Print("\nInterrupted.\n\n");
            return;
        }
        if (shown < kLoginsOneByOne) {
            RunOne(TakeFirst(&candidates));
            ++shown;
        } else {
            RunMany(&candidates);
        }
    }
}

void AccountLoop::RunOne(const Candidate& candidate) {
    auto user = logins_.Find(candidate.login);
    if (!user) return;
    Print(LineBeginning(candidate));
    Visits visits = {MakeVisit(candidate, *user)};
    Print(AlertText(visits.front()));
    Write(&visits);
    Print(OutcomeText(visits.front().outcome));
}

void AccountLoop::RunMany(std::deque<Candidate>* candidates) {
    Visits visits = VisitSome(candidates);
    if (visits.empty()) return;
    Write(&visits);
    SString lines;
    for (const Visit& visit : visits) {
        lines += LineBeginning(visit.candidate) + AlertText(visit) + OutcomeText(visit.outcome);
    }
    Print(lines);
}

/// Homes are visited before the transaction: a hung file server must not hold the lock.
AccountLoop::Visits AccountLoop::VisitSome(std::deque<Candidate>* candidates) {
    Visits visits;
    size_t bytes = 0;
    const auto end = std::chrono::steady_clock::now() + kBatchTime;
    while (!candidates->empty() && bytes < kBatchBytes && !CriticalSection::WasInterrupted()) {
        Candidate candidate = TakeFirst(candidates);
        if (auto user = logins_.Find(candidate.login)) {
            visits.push_back(MakeVisit(candidate, *user));
            bytes += visits.back().account.finger_info.Length();
        }
        if (std::chrono::steady_clock::now() >= end) break;
    }
    return visits;
}

SStringList AccountLoop::Addresses(const SString& login) const {
    SStringList addresses;
    for (const SString& domain : site_.mail_domains) addresses.Push(login + "@" + domain);
    return addresses;
}

AccountLoop::Visit AccountLoop::MakeVisit(const Candidate& candidate, const Identity& user) {
    Visit visit;
    visit.candidate = candidate;
    visit.account = {candidate.full_name, candidate.login, Addresses(candidate.login), site_.access_domain,
                     ""};
    if (!IsFileName(candidate.login)) {
        visit.maildrop = Maildrop::Suspicious;
        return visit;
    }
    visit.maildrop = RepairMaildrop(MaildropPath(candidate.login), user, site_.mail_group);
    HomeFindings findings = VisitHome(candidate.home, user, ForwardNoticeFile(site_.host));
    visit.account.finger_info = findings.finger_lines.Join("\r\n");
    // A login that is no valid address cannot be mailed.
    if (findings.has_forward && IsLocalPart(candidate.login)) {
        results_->forward_users.Push(visit.account.addresses.Get(0));
    }
    return visit;
}

/// All accounts in one transaction. False if a refusal rolled it back. True if the lock could not be had:
/// each login alone would wait 5 s for it again.
bool AccountLoop::WriteTogether(Visits* visits) {
    AccountTransaction transaction;
    for (Visit& visit : *visits) visit.outcome = MakeAccountInBatch(visit.account, &visit.uid_and_password);
    return transaction.Commit() || !transaction.IsOpen();
}

void AccountLoop::Write(Visits* visits) {
    if (visits->size() == 1 || !WriteTogether(visits)) {
        for (Visit& visit : *visits) visit.outcome = MakeAccount(visit.account, &visit.uid_and_password);
    }
    for (const Visit& visit : *visits) Record(visit);
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
