// Visits a user's home directory, as that user: reads ".project" and ".plan" for the finger information,
// looks for a ".forward", and leaves the notice ".forward.NOTICE".
//
// Homes are untrusted. Only regular files are opened. Links are followed, as whatever the user links to is
// opened with the user's own rights, except those of /proc, which bypass directory permissions. Only the
// whole lines within a file's first 1 MiB are read, and nothing of a file whose size is 0, as many in /proc
// have.
#pragma once

#include "install/visits/visit.h"
#include "support/text/sstring_list.h"

struct HomeFindings {
    SStringList finger_lines;  // "Project:", "-------", the lines, ""; then the same with "Plan:" and "----"
    bool has_forward = false;  // a regular ".forward" file
};

/// Finds and writes nothing if the home is not an absolute path or the system refuses the user's identity.
/// The notice never replaces anything, not even a dangling link; only an empty one is filled.
/// The progress tells at which file the visit is.
HomeFindings VisitHome(const SString& path, const Identity& user, const SString& notice, ManyUsers* users,
                       VisitProgress* progress);
