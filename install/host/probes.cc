#include "install/host/probes.h"

#include "support/system/command.h"
#include "support/system/identity.h"
#include "support/system/process.h"

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
