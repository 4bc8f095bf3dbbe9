// What Check looks at. A look prints and changes nothing, and adds to the findings; all but LookAtSite run in
// a child process, which is given up when it hangs.
#pragma once

#include "check/findings.h"

/// How much of the site has to be known for a look.
enum class Known { Nothing, Configuration, Owner };

/// Sets the site's settings, as Install's start-up does.
Known LookAtSite(Findings* findings);

void LookAtDirectories(Findings* findings);  // directories.cc
void LookAtDisks(Findings* findings);        // disks.cc
void LookAtPrograms(Findings* findings);     // programs.cc
void LookAtPorts(Findings* findings);        // ports.cc
void LookAtInetd(Findings* findings);        // inetd.cc
void LookAtSendmail(Findings* findings);     // sendmail.cc
void LookAtMaildropDir(Findings* findings);  // maildrops.cc
void LookAtMaildrops(Findings* findings);    // maildrops.cc
void LookAtLogins(Findings* findings);       // logins.cc
void LookAtAccounts(Findings* findings);     // accounts.cc
void LookAtDeliveries(Findings* findings);   // deliveries.cc
void LookAtModules(Findings* findings);      // modules.cc
void LookAtQueue(Findings* findings);        // queue.cc
void LookAtBoot(Findings* findings);         // boot.cc
