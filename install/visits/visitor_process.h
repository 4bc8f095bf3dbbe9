// What the visitor's process does: one visit after the other, until its socket ends.
#pragma once

#include "install/visits/visit.h"
#include "support/process/message_socket.h"

/// Gives up all descriptors but the socket, and answers requests in their order. Each answer is sent before
/// the next visit begins.
void ServeVisits(MessageSocket socket, const SString& host, gid_t mail_group, VisitProgress* progress);
