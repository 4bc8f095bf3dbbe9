#include "install/sentences.h"

#include "install/console.h"
#include "install/settings.h"

SString SupportContact() {
    return gstr_SupportAddress + " or at " + gstr_SupportPhone;
}

SString SupportLine() {
    return "If you have difficulty resolving this problem, please contact Ardenvale, Inc. at " +
           SupportContact() + ".";
}

SString ContactMessage() {
    return "Contact Ardenvale at " + SupportContact() + " if you need help resolving this problem.";
}

SString OwnershipMessage() {
    return "The directory should be owned by " + gstr_MailOwner + " with group " + gstr_MailGroup +
           " and mode 750. Each database in the directory should have the same owner and group, "
           "and have mode 640.";
}

SString LikelyCause() {
    return "This is most likely caused by a problem with permissions on " + gstr_TernHarbor +
           "config or if the disk has filled up.";
}

bool Abort() {
    Print("Installation aborted.\n");
    return false;
}

bool AbortOverAccounts(const SString& error) {
    PrintParagraph(error);
    PrintParagraph(OwnershipMessage());
    PrintParagraph(ContactMessage());
    return Abort();
}
