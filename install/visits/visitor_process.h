// What the visitor's process does: one visit after the other, until its socket ends.
#pragma once

#include "install/visits/visit.h"
#include "support/process/message_socket.h"

/// Repairs the maildrop and visits the home of each request. The host's name is told in the notices.
VisitWork SetUpVisits(const SString& host, gid_t mail_group);

/// Gives up all descriptors but the socket, and answers requests in their order. Each answer is sent before
/// the next visit begins.
void ServeVisits(MessageSocket socket, const VisitWork& work, VisitProgress* progress);
