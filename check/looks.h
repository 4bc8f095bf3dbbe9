// What Check looks at. A look prints and changes nothing, and adds to the findings; all but LookAtSite run in
// a child process, which is given up when it hangs.
#pragma once

#include "check/expected_questions.h"
#include "check/findings.h"

/// How much of the site has to be known for a look.
enum class Known { Nothing, Configuration, Owner };

/// Sets the site's settings, as Install's start-up does.
Known LookAtSite(Findings* findings);

void LookAtDirectories(Findings* findings);  // host/directories.cc
void LookAtDisks(Findings* findings);        // host/disks.cc
void LookAtPrograms(Findings* findings);     // host/programs.cc
void LookAtPorts(Findings* findings);        // host/ports.cc
void LookAtInetd(Findings* findings);        // host/inetd.cc
void LookAtSendmail(Findings* findings);     // host/sendmail.cc
void LookAtMaildropDir(Findings* findings);  // host/maildrops.cc
void LookAtMaildrops(Findings* findings);    // host/maildrops.cc
void LookAtLogins(Findings* findings);       // host/logins.cc
void LookAtAccounts(Findings* findings);     // mail_system/accounts.cc
void LookAtDeliveries(Findings* findings);   // mail_system/deliveries.cc
void LookAtModules(Findings* findings);      // mail_system/modules.cc
void LookAtQueue(Findings* findings);        // mail_system/queue.cc
void LookAtRunning(Findings* findings);      // mail_system/running.cc
void LookAtBoot(Findings* findings);         // host/boot.cc

/// What the next run will ask; mail_system/questions.cc.
std::vector<ExpectedQuestion> LookAtQuestions();
