// The Postmaster step: makes sure that the administrator's account exists and that its mail reaches somebody,
// and asks for its password, the domains from which it may configure the mail system, and its deliveries.
#include "install/accounts/account_digest.h"
#include "install/console.h"
#include "install/critical_section.h"
#include "install/postmaster/creation_screen.h"
#include "install/postmaster/deliveries.h"
#include "install/postmaster/dialogue.h"

#include "install/reminders.h"
#include "install/sentences.h"
#include "install/settings.h"
#include "install/steps.h"
#include "support/text/printable.h"

namespace {

bool AbortInaccessible() {
    return AbortOverAccounts(
        "ERROR: Couldn't access the Postmaster account! This is probably a permission problem with the " +
        gstr_TernHarbor + "config directory.");
}

void ShowList(const SString& label, const SStringList& entries) {
    SStringList shown;
    for (const SString& entry : entries) shown.Push(Printable(entry));
    Print(label + shown.Join("\n" + SString(' ', 21)) + "\n");
}

void ShowPostmaster(const SAccount& postmaster, const SStringList& addresses) {
    Print("\n");
    Tell("The Postmaster account is currently configured with the following information:");
    Print("    Password:        [not shown]\n\n");
    ShowList("    Access Domains:  ", postmaster.Get("Access-Domains"));
    Print("\n");
    ShowList("    Postmasters:     ", addresses);
}

void IntroduceNewAccount() {
    Print("\n");
    PrintParagraph(
        "The Postmaster account needs to be set up with a password and with delivery to one or more "
        "human recipients. You can also change the Access-Domains of the account "
        "(which is currently set up to be only your domain).");
}

void IntroducePostmasters() {
    PrintParagraph(
        "Please list the E-mail addresses of the people that are to have Postmaster privileges. By "
        "specifying someone's address here, and supplying them with the Postmaster password, you give "
        "them control over every aspect of tern.harbor. "
        "Such responsibility should be given only to the appropriate person(s).");
    PrintParagraph(
        "If you want to have multiple Postmasters, list their E-mail addresses here, separated by commas.");
}

/// A refused field is only reported: the account keeps working with the old value.
void Store(SAccountMod* postmaster, const SString& field, const SString& what, const SStringList& values) {
    RecordEdit(postmaster->Uid(), {{field.CString(), values}});
    if (postmaster->Set(field, values) != 0) return;
    PrintParagraph("WARNING: The new " + what + " of the Postmaster account could not be stored. " +
                   LikelyCause() + " You will be reminded of this at the end of the installation.");
    Remind({"Run this program again to set the " + what + " of the Postmaster account"});
}

bool TellOldRetained() {
    PrintParagraph(
        "WARNING: An error occurred while editing the postmaster account. "
        "The old delivery information has been retained.");
    PrintParagraph(LikelyCause());
    Tell(OwnershipMessage());
    return true;
}

bool TellOldLost() {
    PrintParagraph(
        "ERROR: The new deliveries specified for the postmaster account failed to be set up, and the old "
        "delivery information couldn't be retained.");
    PrintParagraph(
        "Run this program again to set up the postmaster account. "
        "If it fails a second time, contact Ardenvale, Inc. at " +
        SupportContact() + " so that we can help find the problem.");
    return false;
}

bool TellReplacement(Replacement replacement) {
    if (replacement == Replacement::OldRetained) return TellOldRetained();
    if (replacement == Replacement::OldLost) return TellOldLost();
    Print("\nPostmaster account setup completed.\n\n");
    return true;
}

Replacement Replace(SAccountDB* accounts, SAccountMod* postmaster, const Deliveries& old,
                    const Deliveries& next) {
    return Uninterrupted([&] { return ReplaceDeliveries(accounts, postmaster, old, next); });
}

bool ChangeDeliveries(SAccountDB* accounts, SAccountMod* postmaster, const Deliveries& old) {
    const std::optional<SStringList> addresses = DeliveryAddresses(accounts, old);
    if (!addresses) return AbortInaccessible();
    const SString answer = AskLine(QuestionId::Postmasters, addresses->Join(","));
    SStringList refusals;
    const std::optional<Deliveries> chosen =
        ChooseDeliveries(accounts, S822Parser(answer).Addresses(), gstr_HostName, gstr_DomainName, &refusals);
    for (const SString& refusal : refusals) Print(Printable(refusal) + "\n");
    if (!chosen) return AbortInaccessible();
    if (chosen->IsEmpty()) {
        Print("\n");
        Tell("No valid addresses specified -- old postmaster deliveries retained.");
        return true;
    }
    return TellReplacement(Replace(accounts, postmaster, old, *chosen)) && !CriticalSection::WasInterrupted();
}

bool EditPostmaster(SAccountDB* accounts, SAccountMod* postmaster, const SAccount& record, bool is_new) {
    if (is_new) IntroduceNewAccount();
    const std::optional<SString> password = AskPassword();
    if (!password) return false;
    Store(postmaster, "Password", "password", *password);

    if (is_new) ExplainAccessDomains(gstr_HostName, gstr_DomainName);
    const std::optional<SStringList> domains =
        AskAccessDomains(record.Get("Access-Domains"), gstr_DomainName);
    if (!domains) return false;
    Store(postmaster, "Access-Domains", "Access-Domains", *domains);

    if (is_new) IntroducePostmasters();
    return ChangeDeliveries(accounts, postmaster, DeliveriesOf(record));
}

void TellNotOnDisk() {
    PrintParagraph("WARNING: The system could not confirm that the Postmaster account is on the disk. " +
                   LikelyCause() + " You will be reminded of this at the end of the installation.");
    Remind({"Run this program again to check the Postmaster account"});
}

}  // namespace

bool SetupAdminAccount() {
    SAccountDBMod accounts;
    SAccount record;
    SAccountMod postmaster;
    BeginProgress("Checking for Postmaster account");
    const Lookup before = accounts.Find("Postmaster", &record);
    const bool is_new = before == Lookup::Missing;
    EndProgress(is_new ? "not found" : before == Lookup::Found ? "found" : "");
    if (is_new && !CreatePostmasterWithRoot(&accounts)) return false;
    // A failed look-up must not count as a missing account.
    if (before == Lookup::Failed || accounts.Find("Postmaster", &record) != Lookup::Found ||
        accounts.ModifyAccount("Postmaster", &postmaster) == 0) {
        return AbortInaccessible();
    }
    if (!is_new) {
        const std::optional<SStringList> addresses = DeliveryAddresses(&accounts, DeliveriesOf(record));
        if (!addresses) return AbortInaccessible();
        ShowPostmaster(record, *addresses);
        const char answer = Ask(QuestionId::ChangePostmaster);
        if (answer != 'y') return answer != 'q';
    }
    const bool go_on = EditPostmaster(&accounts, &postmaster, record, is_new);
    if (!SyncAccounts() && go_on) TellNotOnDisk();
    return go_on;
}
