// Gives a maildrop back the owner, group, mode and access list that it had before a run
// (install/visits/maildrop.h).
//
// The directory may be world-writable: only a regular file with one link is changed, and only the one that
// lstat saw. It is given back if it is as the run left it, or a step on the way there or back; to root or its
// user, never to a third login, who could read and write the mail that has come since; and without
// set-user-ID and set-group-ID, as its user may have written in it since: that is told. At no moment has
// anybody more rights than before or after.
#pragma once

#include "install/record/change.h"
#include "undo/mail_system/users_outcome.h"

/// Whether it belonged to root or to its user.
bool MayGoBack(const change::MaildropGiven& given);

/// Needs root's rights.
UsersOutcome GiveBack(const change::MaildropGiven& given);
