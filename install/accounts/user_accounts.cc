// The account step: asks which users shall have a mail account, and makes their accounts.
#include "install/accounts/account_loop.h"
#include "install/accounts/account_questions.h"
#include "install/accounts/candidates.h"
#include "install/accounts/password_entries.h"
#include "install/accounts/set_up_mails.h"
#include "install/console.h"
#include "install/critical_section.h"
#include "install/reminders.h"
#include "install/sentences.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/text/printable.h"

namespace {

void ExplainMissingMailGroup() {
    PrintParagraph(
        "ERROR: couldn't find the 'mail' group in the group database. This is assumed to be the group "
        "owner of users' mailboxes, and must exist for tern.harbor to deliver mail to local users.");
    PrintParagraph("Please contact Ardenvale at " + SupportContact() +
                   " so that we can support your non-standard configuration in the future.");
    Abort();
}

void OfferAccountForm(const SString& use) {
    PrintParagraph("Would you like to have an account form sent to your mailbox? It can be used to " + use +
                   " users to the system. Alternately you can use the World-Wide-Web interface "
                   "for all your administration of tern.harbor.");
    if (Ask(QuestionId::SendAccountForm) == 'y') SendNewAccountForm();
}

void Skip(const PasswordEntry& entry, const char* reason, AccountResults* results) {
    results->skipped_names.Push(FullName(entry.comment, entry.login));
    results->skipped_logins.Push(entry.login);
    Print("Skipping " + Printable(entry.login) + " (" + reason + ")\n");
}

std::deque<Candidate> SelectCandidates(PasswordEntries* entries, AccountResults* results) {
    std::deque<Candidate> candidates;
    while (auto entry = entries->Next()) {
        if (const char* reason = ReasonToSkip(*entry); reason != nullptr) {
            Skip(*entry, reason, results);
        } else {
            candidates.push_back({FullName(entry->comment, entry->login), entry->login, entry->home});
        }
    }
    return candidates;
}

/// The users who shall have accounts. Nullopt if the password file cannot be opened or read.
std::optional<std::deque<Candidate>> ReadCandidates(AccountMethod method, AccountResults* results) {
    if (method == AccountMethod::AllSources) {
        Print("Searching for users.... \n\n");
        PasswordEntries entries;
        return SelectCandidates(&entries, results);
    }
    Print("Searching through " + gstr_PasswdFile + "....\n\n");
    PasswordEntries entries(gstr_PasswdFile);
    if (!entries.IsOpen()) return std::nullopt;
    auto candidates = SelectCandidates(&entries, results);
    return entries.HasFailed() ? std::nullopt : std::optional(std::move(candidates));
}

void SyncNewAccounts(const AccountResults& results) {
    if (results.created.IsEmpty() || SyncAccounts()) return;
    PrintParagraph(
        "WARNING: the system reported an error when the account database was written to the disk. "
        "The new accounts may be lost if the system goes down now.");
    Remind({"Check the disk that holds " + gstr_TernHarbor + "config/ for errors,",
            "then run this installation program again to add any missing accounts."});
}

void RemindOfUnanswered(const SStringList& lines) {
    for (const SString& line : lines) Remind(line);
}

/// The messages are queued in the same critical section, so an interrupt cannot leave out only some of them.
/// False after an interrupt; if it came before the messages, none is queued (prescribed).
bool CreateAccounts(std::deque<Candidate> candidates, const AccountSite& site, Visitor* visitor,
                    AccountResults* results) {
    Print("Creating user accounts.... \n");
    Uninterrupted([&] {
        AccountLoop(site, visitor, results).Run(std::move(candidates));
        Print("\n");
        SyncNewAccounts(*results);
        RemindOfUnanswered(results->unanswered);
        if (!CriticalSection::WasInterrupted()) QueueSetUpMails(*results, gstr_HostName);
    });
    if (!CriticalSection::WasInterrupted()) return true;
    Print("\nExiting.\n\n");
    return false;
}

void PrintCount(size_t count, bool accounts_exist) {
    Print(SString(count) + " UNIX accounts found." +
          (accounts_exist ? " (Existing accounts will not be modified.)" : "") + "\n\n");
}

int AddAccounts(AccountMethod method, gid_t mail_group, AccountResults results) {
    // A visitor started later would hold a copy of the candidates.
    Visitor visitor(gstr_HostName, mail_group);
    auto candidates = ReadCandidates(method, &results);
    if (!candidates) {
        PrintParagraph("WARNING: couldn't open " + gstr_PasswdFile + " to determine the user accounts.");
        OfferAccountForm("add");
        return 1;
    }
    Print("\n");
    if (candidates->empty()) {
        Print("No accounts to create.\n");
        QueueSetUpMails(results, gstr_HostName);  // the results mail lists the skipped users
        return 1;
    }
    PrintCount(candidates->size(), results.accounts_existed);
    auto domains = AskMailDomains(gstr_HostName, gstr_DomainName);
    if (!domains) return 0;
    const AccountSite site{gstr_DomainName, gstr_MaildropDir, *domains};
    return CreateAccounts(std::move(*candidates), site, &visitor, &results) ? 1 : 0;
}

}  // namespace

int AddUserAccounts() {
    const auto mail_group = MailGroup();
    if (!mail_group) {
        ExplainMissingMailGroup();
        return 0;
    }
    AccountResults results;
    results.accounts_existed = HasUserAccounts();
    const AccountMethod method = AskAccountMethod(results.accounts_existed);
    if (method == AccountMethod::Quit) return 0;
    if (method != AccountMethod::None) return AddAccounts(method, *mail_group, std::move(results));
    if (!results.accounts_existed) OfferAccountForm("begin adding");
    return 1;
}
