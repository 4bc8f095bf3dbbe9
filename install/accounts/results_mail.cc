// Composes the results mail, section by section.
#include "install/accounts/results_mail.h"
#include "install/console.h"
#include "support/text/printable.h"

namespace {

const char kLineEnd[] = "\r\n";
const SString kIndent(' ', 8);

void AddLines(const SStringList& lines, SString* body) {
    for (const SString& line : lines) *body += line + kLineEnd;
}

void AddIndented(const SStringList& entries, SString* body) {
    for (const SString& entry : entries) *body += kIndent + Printable(entry) + kLineEnd;
}

void AddFailed(const SStringList& failed, SString* body) {
    AddLines({"", "Install failed to set up accounts for the following users:",
              "(contact Ardenvale for assistance)", ""},
             body);
    AddIndented(failed, body);
    AddLines("", body);
}

SString SkippedUser(const SString& login, const SString& name) {
    constexpr size_t kColumn = 12;
    const SString text = Printable(login);
    return name.IsEmpty() ? text : PaddedTo(text, kColumn) + " (" + Printable(name) + ")";
}

void AddSkipped(const SStringList& logins, const SStringList& names, SString* body) {
    AddLines({"", "Accounts *were not* set up for the following UNIX id's",
              "since they historically do not refer to actual users or",
              "because a home directory isn't specified in the password", "database:", ""},
             body);
    for (size_t i = 0; i < logins.Count(); ++i) {
        *body += kIndent + SkippedUser(logins[i], names[i]) + kLineEnd;
    }
    AddLines({"", "You can add these accounts, or create aliases for them if",
              "you want. See the manual for instructions.", ""},
             body);
}

void AddForwards(const SStringList& addresses, SString* body) {
    AddLines({"", "The following users had .forward files in their home dir-", "ectories:", ""}, body);
    AddIndented(addresses, body);
    AddLines({"", "These files are not going to be honored by tern.harbor.",
              "See the manual for instructions on setting up forwarding", "for an account.", ""},
             body);
}

}  // namespace

SString ResultsMailBody(const AccountResults& results) {
    SString body;
    AddLines({"Here's a summary of the tasks performed by the tern.harbor", "Install program:", "",
              "Accounts were set up for the following users:", ""},
             &body);
    AddIndented(results.created, &body);
    AddLines({"", "", "No system-wide aliases or user forwards were set up by the",
              "installation process (users with .forward files, if any,",
              "are listed below). Please look through your aliases file",
              "and set up accounts or aliases as necessary. See manual",
              "chapters 5 and 6 which describe the three alias types", "and how to set them up.", ""},
             &body);
    // Prescribed: failures are left out if accounts existed before.
    if (!results.failed.IsEmpty() && !results.accounts_existed) AddFailed(results.failed, &body);
    if (!results.skipped_logins.IsEmpty()) AddSkipped(results.skipped_logins, results.skipped_names, &body);
    if (!results.forward_users.IsEmpty()) AddForwards(results.forward_users, &body);
    AddLines({"", "Thank you for installing tern.harbor!", ""}, &body);
    return body;
}
