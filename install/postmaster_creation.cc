#include "install/postmaster_creation.h"

#include "install/console.h"
#include "install/postmaster_accounts.h"
#include "install/postmaster_messages.h"
#include "install/settings.h"

namespace {

bool AbortNotCreated() {
    Print("\n");
    return AbortSetup(
        "ERROR: Couldn't create the Postmaster account! This is probably a permission problem with "
        "the " +
        gstr_TernHarbor + "config directory.");
}

bool AbortNoRoot() {
    Print("failed!\n");
    return AbortSetup(
        "ERROR: Couldn't create a mail account for root. There is probably a problem with the "
        "permissions of " +
        gstr_TernHarbor + "config or the disk is full.");
}

bool AbortRootNotAdded() {
    Print("\n");
    return AbortSetup("ERROR: Couldn't add root to the Postmaster account. " + LikelyCause());
}

void TellNoDelivery() {
    Print("\n");
    PrintParagraph(
        "ERROR: Couldn't set up the Postmaster account to deliver mail to the root account. Make sure "
        "that there are valid Postmaster deliveries set up before you run tern.harbor.");
    PrintParagraph(
        "You will have the opportunity to specify new deliveries in a moment, but you may want to check "
        "that it is set up correctly by running this program again.");
}

/// Delivers to root and makes the accounts of this run lasting: all of them or none, so that a run that is
/// killed never leaves a Postmaster whom the next run takes for one that was set up.
bool Finish(AccountTransaction* creation, SAccountMod* postmaster, const SString& root,
            const SString& failed) {
    const bool delivered = postmaster->Set("Account-Delivery", root) != 0;
    if (!creation->Commit()) return AbortNotCreated();
    Print((delivered ? SString("done") : failed) + "\n");
    if (!delivered) TellNoDelivery();
    return true;
}

}  // namespace

bool CreatePostmasterWithRoot(SAccountDBMod* accounts) {
    Print("Creating Postmaster account.... ");
    AccountTransaction creation;
    SAccountMod postmaster;
    if (!creation.IsOpen() || !CreatePostmaster(accounts, &postmaster, gstr_HostName, gstr_DomainName)) {
        return AbortNotCreated();
    }
    SString root;
    const Lookup owner = accounts->FindOwner(RootAddress(gstr_HostName), &root);
    if (owner == Lookup::Failed) return AbortNotCreated();
    if (owner == Lookup::Found) return Finish(&creation, &postmaster, root, "failed");

    Print("hold on a second....\nCreating a mail account for root.... ");
    root = CreateRoot(accounts, gstr_HostName, gstr_DomainName);
    if (root.IsEmpty()) return AbortNoRoot();
    Print("done\nAdding root to Postmaster delivery list.... ");
    if (accounts->ModifyAccount("Postmaster", &postmaster) == 0) return AbortRootNotAdded();
    return Finish(&creation, &postmaster, root, "failed!");
}
