// Sendmail's daemon under any of its names, and what waits in its queue.
#include "install/host/sendmail.h"

#include <unistd.h>

#include "answer/keys.h"
#include "check/host/commands.h"
#include "check/looks.h"
#include "install/host/probes.h"
#include "install/reminders.h"
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
        findings->Note("sendmail", "the daemon runs as process " + process, {},
                       LineFor(QuestionOf(QuestionId::KillSendmail), "yes"));
    }
    for (const SString& process : debians) {
        findings->Note("sendmail", "the daemon runs as process " + process + ", under Debian's name");
    }
    if (found.IsEmpty() && debians.IsEmpty()) findings->Ok("sendmail", "no daemon runs");
}

/// The program that has a queue of its own: the one that is to be replaced, or was. Empty if there is none.
SString ForeignSendmail() {
    const AsRoot root;
    const SString second = "/usr/sbin/sendmail";
    for (const SString& path :
         {gstr_Sendmail, gstr_Sendmail + ".bak", second, second + ".distrib", second + ".bak"}) {
        if (FileExists(path) && !LeadsTo(path, gstr_ProgramDir + "bin/sendmail")) return path;
    }
    return "";
}

SStringList ListingOf(const SString& sendmail) {
    return sendmail == gstr_Sendmail ? MailQueueListing() : LinesOf(ShellWord(sendmail) + " -bp");
}

/// "Total requests: 1": what most of them end their listing with.
SString Summary(SStringList listing) {
    listing = listing.Grep("/\\S/");
    if (listing.IsEmpty()) return "";
    return ": " + listing[listing.Count() - 1].S("^\\s+", "").S("\\s+$", "");
}

void LookAtItsQueue(Findings* findings) {
    const SString sendmail = ForeignSendmail();
    if (sendmail.IsEmpty()) return findings->Ok("sendmail", "no queue but the mail system's own");
    if (getuid() != 0) return findings->NotLookedAt("sendmail", "the queue, which only root may see");
    const SStringList listing = ListingOf(sendmail);
    if (IsEmptyQueue(listing)) return findings->Ok("sendmail", "no mail waits in the queue");
    findings->Problem("sendmail", "mail waits in the queue of " + sendmail + Summary(listing),
                      {sendmail + " -q", sendmail + " -bp"});
}

}  // namespace

void LookAtSendmail(Findings* findings) {
    LookAtDaemon(findings);
    LookAtItsQueue(findings);
}
