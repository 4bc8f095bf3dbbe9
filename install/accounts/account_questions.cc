// What the account step asks before it makes accounts.
#include "install/accounts/account_questions.h"

#include "install/console.h"
#include "support/system/host.h"
#include "support/text/printable.h"

namespace {

void ExplainMethods(bool accounts_exist) {
    if (!accounts_exist) {
        PrintParagraph(
            "Electronic mail accounts can be created automatically for the users that currently have "
            "UNIX login accounts. Please select one of the following methods for setting up the accounts:");
    } else {
        PrintParagraph(
            "There are already some electronic mail accounts in the tern.harbor account database. If you "
            "would like to synchronize your UNIX password database with the internal tern.harbor "
            "database, you can do that now.");
        PrintParagraph(
            "The UNIX password database will be searched for users that currently don't have accounts in "
            "tern.harbor, and accounts for those users will be created.");
        PrintParagraph("Please select one of the following methods for setting up the accounts:");
    }
    Print(
        " [A] Search for all users, including those\n"
        " in the /etc/passwd file and NIS/NIS+.\n\n"
        " [P] Search through /etc/passwd only.\n\n"
        " [N] Don't automatically set up any accounts.\n\n");
}

void ExplainMailDomains(const SString& host, const SString& domain) {
    PrintParagraph(
        "Please list all of the mail domains that each user should receive mail for, listing the most "
        "important one first (i.e. the one that should show up on outgoing mail).");
    PrintParagraph(
        "For example, if you want all of your users to receive mail addressed to <user@" + domain +
        "> as well as <user@" + host +
        ">, and you prefer the address with just your domain for outgoing mail, you would specify");
    PrintIndented(4, domain + "," + host);
    Print("\n");
    PrintParagraph("here. You can list as many domains as you want, separated by spaces or commas.");
}

/// The valid domains in the answer, a single label completed with the mail domain.
SStringList CheckDomains(const SString& answer, const SString& domain) {
    SStringList accepted;
    SStringList pieces = answer.Split("[\\s,]+").Grep("/\\S/");
    for (const SString& piece : pieces) {
        if (!IsValidDomain(piece)) {
            Print("Invalid syntax for domain: " + Printable(piece) + "\n");
        } else {
            accepted.Push(piece.Index('.') < 0 ? piece + "." + domain : piece);
        }
    }
    return accepted;
}

/// Offers to add the host's own name if the list lacks it. False if the administrator quits.
bool OfferHostName(const SString& host, SStringList* accepted) {
    if (LowerCase(*accepted).Contains(SString(host).LowerCase())) return true;
    PrintParagraph(
        "You didn't specify the hostname of this machine. You will probably see a lot of errors for "
        "misaddressed mail without it, so you are encouraged to add it to the list.");
    char answer = AskAbout(QuestionId::AddHostName, host);
    if (answer == 'y') accepted->Push(host);
    return answer != 'q';
}

bool ConfirmDomains(const SStringList& accepted) {
    PrintParagraph("The following domains will be used for addresses in each user's account:");
    PrintIndented(5, accepted);
    Print("\n");
    PrintParagraph("Also, addresses in outgoing mail will have " + accepted.Get(0) + " as the domain.");
    return Ask(QuestionId::ConfirmDomains) != 'n';
}

}  // namespace

AccountMethod AskAccountMethod(bool accounts_exist) {
    ExplainMethods(accounts_exist);
    switch (Ask(QuestionId::AccountMethod, accounts_exist ? "N" : "P")) {
        case 'a':
            return AccountMethod::AllSources;
        case 'q':
            return AccountMethod::Quit;
        case 'n':
            return AccountMethod::None;
        default:
            return AccountMethod::PasswordFile;
    }
}

std::optional<SStringList> AskMailDomains(const SString& host, const SString& domain) {
    ExplainMailDomains(host, domain);
    SStringList proposal = host;
    // Ends at the end of input, too: the defaults are valid, and are accepted.
    for (;;) {
        SString answer = AskLine(QuestionId::MailDomains, proposal.Join(","));
        Print("Checking domains....\n");
        SStringList accepted = CheckDomains(answer, domain);
        if (!OfferHostName(host, &accepted)) return std::nullopt;
        if (accepted.IsEmpty()) {
            Print("Error: You must specify at least one domain.\n");
            proposal = host;
        } else if (ConfirmDomains(accepted)) {
            return accepted;
        } else {
            proposal = LowerCase(accepted);
        }
    }
}
