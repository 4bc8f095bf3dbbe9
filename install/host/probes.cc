#include "install/host/probes.h"

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
