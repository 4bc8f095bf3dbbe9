// Sentences that several steps share, and the end of an installation that cannot go on.
#pragma once

#include "support/text/sstring.h"

/// "support@ardenvale.example or at +1 555 0100", to follow "contact ... at".
SString SupportContact();
/// "If you have difficulty resolving this problem, please contact ..."
SString SupportLine();
/// "Contact Ardenvale at ... if you need help resolving this problem."
SString ContactMessage();
/// "The directory should be owned by OWNER with group GROUP and mode 750. Each database ..."
SString OwnershipMessage();
/// "This is most likely caused by a problem with permissions on DIRECTORY or if the disk has filled up."
SString LikelyCause();

/// Prints "Installation aborted." and gives false, for the step to return.
bool Abort();
/// The error, how the account database's directory should look and whom to ask; then Abort.
bool AbortOverAccounts(const SString& error);
