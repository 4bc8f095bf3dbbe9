// The errors that end the Postmaster's set-up.
#include "install/postmaster/messages.h"

#include "install/console.h"
#include "install/settings.h"

SString LikelyCause() {
    return "This is most likely caused by a problem with permissions on " + gstr_TernHarbor +
           "config or if the disk has filled up.";
}

bool AbortSetup(const SString& error) {
    PrintParagraph(error);
    PrintParagraph(OwnershipMessage());
    PrintParagraph(ContactMessage());
    PrintParagraph("Installation aborted.");
    return false;
}

bool AbortInaccessible() {
    return AbortSetup(
        "ERROR: Couldn't access the Postmaster account! This is probably a permission problem with the " +
        gstr_TernHarbor + "config directory.");
}
