// Sendmail's daemon under any of its names, and what waits in its queue.
#include "install/host/sendmail.h"

#include <unistd.h>

#include "answer/keys.h"
#include "check/looks.h"
#include "install/host/probes.h"
#include "install/settings.h"
#include "support/process/process.h"
#include "support/system/file.h"
#include "support/system/identity.h"

namespace {

void LookAtDaemon(Findings* findings) {
    const SStringList processes = RunningProcesses();
    const SStringList found = SendmailProcesses(processes);
    // Debian's own, which Install finds by its port.
    const SStringList debians = ProcessesNamed(processes, "sendmail-mta");
    for (const SString& process : found) {
        findings->Note("sendmail", "the daemon runs as process " + process,
                       "keep it from starting at the next boot",
                       LineFor(QuestionOf(QuestionId::KillSendmail), "yes"));
    }
    for (const SString& process : debians) {
        findings->Note("sendmail", "the daemon runs as process " + process + ", under Debian's name", {},
                       LineFor(QuestionOf(QuestionId::WhichProcesses), "sendmail-mta"));
    }
    if (found.IsEmpty() && debians.IsEmpty()) findings->Ok("sendmail", "no daemon runs");
}

bool HasQueue() {
    const AsRoot root;
    return FileExists(gstr_Sendmail) && !LeadsTo(gstr_Sendmail, gstr_ProgramDir + "bin/sendmail");
}

void LookAtItsQueue(Findings* findings) {
    if (!HasQueue()) return findings->Ok("sendmail", "no queue but the mail system's own");
    if (getuid() != 0) return findings->NotLookedAt("sendmail", "the queue, which only root may see");
    const SStringList listing = MailQueueListing();
    if (IsEmptyQueue(listing)) return findings->Ok("sendmail", "no mail waits in the queue");
    const SString last = listing[listing.Count() - 1].S("^\\s+", "").S("\\s+$", "");
    findings->Problem("sendmail", "mail waits in the queue of " + gstr_Sendmail + ": " + last,
                      {gstr_Sendmail + " -q", "mailq, until it shows none"});
}

}  // namespace

void LookAtSendmail(Findings* findings) {
    LookAtDaemon(findings);
    LookAtItsQueue(findings);
}
