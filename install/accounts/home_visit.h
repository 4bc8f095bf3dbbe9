// What the account step does in a user's home directory, as the user: it reads ".project" and ".plan" for the
// finger information, looks for a ".forward", and leaves the notice ".forward.NOTICE" there.
//
// A home is hostile ground. Only regular files are opened; a link to another file of the user's is followed,
// as the user may read that anyway, but none of /proc's, which lead past the rights of directories. Of a file
// beyond 1 MiB only the whole lines within the first 1 MiB count, and of one that claims to be empty, none.
#pragma once

#include "support/system/identity.h"
#include "support/text/sstring_list.h"

struct HomeFindings {
    SStringList finger_lines;  // "Project:", "-------", the lines, ""; then the same with "Plan:" and "----"
    bool has_forward = false;  // a regular ".forward" file
};

/// Nothing is found, and nothing written, where the home is not an absolute path or the system refuses the
/// user's identity. The notice is written only where nothing stands, not even a dangling link.
HomeFindings VisitHome(const SString& home, const Identity& user, const SString& notice);
