// Asks for the Postmaster's password and Access-Domains, and checks them.
#include "install/postmaster/dialogue.h"

#include "install/console.h"
#include "install/sentences.h"
#include "support/system/host.h"
#include "support/text/printable.h"

namespace {

constexpr size_t kShortestPassword = 6;

SStringList Entries(const SString& answer) {
    SStringList entries = answer.Split("[\\s,]+");
    entries.Delete("");  // from a leading comma or blank
    return entries;
}

/// Prints the invalid entries. True if all are valid.
bool CheckAccessDomains(const SStringList& entries) {
    bool good = true;
    for (const SString& entry : entries) {
        if (IsAccessDomain(entry)) continue;
        Print("Invalid Access-Domain: " + Printable(entry) + "\n");
        good = false;
    }
    Print("\n");
    return good;
}

void IntroducePassword() {
    PrintParagraph(
        "Please enter a password for the Postmaster account. This will be used to configure all "
        "parameters and accounts in tern.harbor. It is highly recommended that you DO NOT USE YOUR "
        "SYSTEM'S ROOT PASSWORD for this!");
    PrintParagraph("NOTE: THE PASSWORD YOU TYPE WILL SHOW UP ON THE SCREEN!");
}

void ExplainAccessDomainSyntax(const SString& domain) {
    Print("\n");
    PrintParagraph(
        "At least one of the Access-Domains you entered was rejected because it had invalid syntax. "
        "Please enter them again below. Access-Domains can be host names, domain names, IP addresses, or "
        "IP networks specified using a netmask. An example might be:");
    Print("     " + domain + ",123.45.60.1,123.45.60.64/26\n\n");
}

}  // namespace

bool IsGoodPassword(const SString& text) {
    return text.Length() >= kShortestPassword && !text.Matches("^\\s");
}

bool IsAccessDomain(const SString& text) {
    return IsValidDomain(text) || text.Matches("^\\d{1,3}(\\.\\d{1,3}){3}(/\\d{1,2})?");
}

std::optional<SString> AskPassword() {
    IntroducePassword();
    while (true) {
        SString password = AskLine(QuestionId::PostmasterPassword);
        if (IsGoodPassword(password)) return password;
        PrintParagraph("Please enter a new password (at least 6 characters, not beginning with whitespace)");
        if (InputHasEnded()) {
            Abort();
            return std::nullopt;
        }
    }
}

void ExplainAccessDomains(const SString& host, const SString& domain) {
    PrintParagraph(
        "Please enter the list of Access-Domains for the Postmaster account. "
        "These are the domains (such as " +
        domain + ") or hosts (such as " + host +
        ") from which the Postmaster can configure tern.harbor. Specifying a single host such as " + host +
        " is the most restrictive and therefore safest setting; "
        "however, to configure tern.harbor remotely from any computer in " +
        domain + ", you can list it here. If there is more than one, separate them with commas or spaces.");
    PrintParagraph(
        "For more information about Access-Domains and general Security issues, please refer to the manual.");
}

std::optional<SStringList> AskAccessDomains(const SStringList& current, const SString& domain) {
    SString offered = current.Join(",");
    while (true) {
        SStringList entries = Entries(AskLine(QuestionId::AccessDomains, offered));
        if (entries.IsEmpty()) return current;
        if (CheckAccessDomains(entries)) return entries;
        ExplainAccessDomainSyntax(domain);
        offered = entries.Join(",");
        if (InputHasEnded()) {  // the default would be refused for ever
            Abort();
            return std::nullopt;
        }
    }
}
