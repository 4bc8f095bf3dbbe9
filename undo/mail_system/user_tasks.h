// What is to be done in users' homes and maildrops on the way back, as requests to a visitor.
#pragma once

#include "install/visits/visit.h"
#include "undo/mail_system/maildrop_return.h"
#include "undo/mail_system/notice_removal.h"

VisitRequest ToRemoveNotice(const SString& home, const Identity& user, const NoticeOfRun& notice);
VisitRequest ToGiveBack(const change::MaildropGiven& given);

/// In the visitor's process; the answer's outcome is a UsersOutcome.
VisitAnswer DoTask(const VisitRequest& request, ManyUsers* users, VisitProgress* progress);
