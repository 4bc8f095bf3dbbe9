// Prints how creating the administrator's accounts went.
#include "install/postmaster/creation_screen.h"

#include "install/console.h"
#include "install/postmaster/admin_accounts.h"

#include "install/reminders.h"
#include "install/sentences.h"
#include "install/settings.h"

namespace {

SString ErrorText(AdminAccountsOutcome outcome) {
    if (outcome == AdminAccountsOutcome::NoRoot) {
        return "ERROR: Couldn't create a mail account for root. "
               "There is probably a problem with the permissions of " +
               gstr_TernHarbor + "config or the disk is full.";
    }
    if (outcome == AdminAccountsOutcome::NotReopened) {
        return "ERROR: Couldn't add root to the Postmaster account. " + LikelyCause();
    }
    return "ERROR: Couldn't create the Postmaster account! This is probably a permission problem with the " +
           gstr_TernHarbor + "config directory.";
}

void TellNotDelivered() {
    Print("\n");
    PrintParagraph(
        "ERROR: Couldn't set up the Postmaster account to deliver mail to the root account. Make sure that "
        "there are valid Postmaster deliveries set up before you run tern.harbor.");
    PrintParagraph(
        "You will have the opportunity to specify new deliveries in a moment, but you may want to check "
        "that it is set up correctly by running this program again.");
}

/// The progress lines for root's account, all but the last one's outcome.
void TellRoot(AdminAccountsOutcome outcome) {
    EndProgress("hold on a second....");
    BeginProgress("Creating a mail account for root");
    if (outcome == AdminAccountsOutcome::NoRoot) return;
    EndProgress("done");
    BeginProgress("Adding root to Postmaster delivery list");
}

SString Completion(const AdminAccounts& made) {
    switch (made.outcome) {
        case AdminAccountsOutcome::Done:
            return "done";
        case AdminAccountsOutcome::NotDelivered:
            return made.root_was_made ? "failed!" : "failed";
        case AdminAccountsOutcome::NoRoot:
            return "failed!";
        default:
            return "";
    }
}

}  // namespace

bool CreatePostmasterWithRoot(SAccountDBMod* accounts) {
    BeginProgress("Creating Postmaster account");
    const AdminAccounts made = MakeAdminAccounts(accounts, gstr_HostName, gstr_DomainName);
    if (made.root_was_made) TellRoot(made.outcome);
    EndProgress(Completion(made));
    if (made.outcome == AdminAccountsOutcome::NotDelivered) TellNotDelivered();
    const bool is_made =
        made.outcome == AdminAccountsOutcome::Done || made.outcome == AdminAccountsOutcome::NotDelivered;
    return is_made || AbortOverAccounts(ErrorText(made.outcome));
}
