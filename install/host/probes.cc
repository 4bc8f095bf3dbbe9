#include "install/host/probes.h"

#include "install/site.h"
#include "support/process/command.h"
#include "support/process/process.h"
#include "support/system/identity.h"

SStringList ListeningPorts() {
    const AsRoot root;
    return BoundSockets();
}

SStringList RunningProcesses() {
    const AsRoot root;
    return ReadProcessInfo();
}

SStringList MailQueueListing() {
    const AsRoot root;
    return ReadMailq();
}

/// Process listers cut names to 8, 9 or 10 characters. The looseness of the expression is prescribed. Any
/// user can name a process like this.
SStringList MailSystemProcesses() {
    const AsRoot root;
    const SStringList named = ReadProcessInfo().Grep("/ tern\\.harb?o?r?$/");
    return ProcessesOf(named, MailSystemUsers());
}
