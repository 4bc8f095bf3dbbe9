// Visits to users' homes and maildrops on the way back, by the visitor's process (install/visits/visitor.h):
// one that does not answer holds nobody up for longer than ten seconds.
#pragma once

#include <vector>

#include "install/visits/visit.h"
#include "undo/mail_system/maildrop_return.h"
#include "undo/mail_system/notice_removal.h"

VisitRequest ToRemoveNotice(const SString& home, const Identity& user, const NoticeOfRun& notice);
VisitRequest ToGiveBack(const change::MaildropGiven& given);

struct Visited {
    std::vector<UsersOutcome> outcomes;  // one for each request, in their order
    SStringList silent;                  // what did not answer, a line each
};

/// Many are under way at once. One process serves all calls, and remembers what was silent.
Visited VisitAll(const std::vector<VisitRequest>& requests);
