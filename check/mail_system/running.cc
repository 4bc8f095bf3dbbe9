// Whether the mail system runs.
#include "check/looks.h"
#include "install/host/probes.h"
#include "install/settings.h"
#include "support/database/account.h"

void LookAtRunning(Findings* findings) {
    const SStringList processes = MailSystemProcesses();
    if (!processes.IsEmpty()) {
        return findings->Ok("mail-system",
                            gstr_ProductName + " runs as process " + SString(processes[0].ToNumber()));
    }
    const AccountSession session;
    const SString stopped = gstr_ProductName + " does not run";
    if (SAccountDB().Find("Postmaster") == Lookup::Found) {
        findings->Problem("mail-system", stopped, "start it as at the next boot, or by Install");
    } else {
        findings->Note("mail-system", stopped + "; Install starts it");
    }
}
