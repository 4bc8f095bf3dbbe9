// The loop of the account step: for each login it has the maildrop repaired and the home visited, makes the
// account and prints a line with the outcome.
#pragma once

#include <deque>

#include "install/accounts/account_results.h"
#include "install/accounts/login_index.h"
#include "install/accounts/new_account.h"
#include "install/record/change.h"
#include "install/visits/visitor.h"

/// Without ids, which are looked up shortly before the visit (LoginIndex): the password file may be another
/// host's, and a login may vanish or change its ids while the administrator answers.
struct Candidate {
    SString full_name;
    SString login;
    SString home;
};

struct AccountSite {
    SString access_domain;
    SString maildrop_directory;  // ends in "/"
    SStringList mail_domains;    // at least one
};

class AccountLoop {
  public:
    AccountLoop(const AccountSite& site, Visitor* visitor, AccountResults* results)
        : site_(site), visitor_(visitor), results_(results) {}

    /// Takes the candidates in order until a signal arrives; who was visited by then still gets the account.
    /// What the screen calls created is committed.
    void Run(std::deque<Candidate> candidates);

  private:
    struct Sent {
        Candidate candidate;
        bool is_known;  // to the host, which may have refused to tell
    };
    struct Visit {
        Candidate candidate;
        bool is_known = true;
        NewAccount account;
        Maildrop maildrop = Maildrop::Fine;
        AccountOutcome outcome = AccountOutcome::Failed;
        SString uid_and_password;
    };
    using Visits = std::deque<Visit>;

    void RunOne(const Candidate& candidate);
    void RunMany(std::deque<Candidate>* candidates);
    void FinishVisited();
    bool Send(const Candidate& candidate);
    void SendAhead(std::deque<Candidate>* candidates);
    void SendAgain();
    Visits TakeSome(std::deque<Candidate>* candidates);
    std::optional<Visit> Take();
    void WriteAndPrint(Visits* visits);
    SStringList Addresses(const SString& login) const;
    SString MaildropPath(const SString& login) const { return site_.maildrop_directory + login; }
    using Make = AccountOutcome (*)(const NewAccount& account, SString* uid_and_password);
    static void MakeAccounts(Make make, Visits* visits);
    static bool WriteTogether(Visits* visits);
    void Write(Visits* visits);
    void Record(const Visit& visit);
    void RecordNotices();

    SString LineBeginning(const Candidate& candidate) const;
    SString AlertText(const Visit& visit) const;

    const AccountSite& site_;
    Visitor* visitor_;
    AccountResults* results_;
    LoginIndex logins_;
    std::vector<change::Home> homes_;  // of those that the visitor has not got yet, for the record
    std::deque<Sent> sent_;            // to the visitor, not answered yet
    static constexpr size_t kLeastAhead = 20;
    size_t ahead_ = kLeastAhead;  // how many may be sent: more where they are answered fast
};
