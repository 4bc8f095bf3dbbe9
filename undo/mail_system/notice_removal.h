// Removes a notice that a run left in a user's home (install/visits/home_visit.h).
//
// Homes are untrusted: the home is opened and the notice removed as its user, from the open directory. Only
// what the run may have left goes: a regular file with one link, the user's own, with the run's text to the
// byte and a date within the run, or empty, as a kill left it.
#pragma once

#include <cstdint>

#include "install/visits/visit.h"
#include "undo/mail_system/users_outcome.h"

struct NoticeOfRun {
    SString host;       // that it tells of
    int64_t begun = 0;  // seconds since 1970
    int64_t next = 0;   // the next run's beginning
};

/// Nothing, too, if the notice is an earlier or later run's, or something that is older than the run.
UsersOutcome RemoveNotice(const SString& home, const Identity& user, const NoticeOfRun& notice,
                          ManyUsers* users, VisitProgress* progress);
