// What runs and listens on this host, looked at with root's rights: a host may hide other users' processes.
#pragma once

#include "support/text/sstring_list.h"

/// BoundSockets, ReadProcessInfo and ReadMailq (support/system), each as root.
SStringList ListeningPorts();
SStringList RunningProcesses();
SStringList MailQueueListing();
/// The entries of RunningProcesses that are the mail system's.
SStringList MailSystemProcesses();
