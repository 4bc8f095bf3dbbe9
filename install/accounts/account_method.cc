#include "install/accounts/account_method.h"

#include "install/console.h"

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

}  // namespace

AccountMethod AskAccountMethod(bool accounts_exist) {
    ExplainMethods(accounts_exist);
    switch (Ask("Which method? All/Passwd/None/Quit ", accounts_exist ? "N" : "P")) {
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
