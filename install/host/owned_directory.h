// Making a directory that belongs to another user. Until it has its owner it stands under the name with
// ".new" after it, so that a run that is cut short leaves nothing half done under the real name.
#pragma once

#include <sys/types.h>

#include "support/text/sstring.h"

enum class NewDirectory {
    Made,
    NotMade,   // nothing stands at the path that did not stand there before
    NotOwned,  // it is there, but owner and group could not be set
};

/// As root: the directory with this mode (less the process's mask), owner and group. A link in the place of
/// the directory is never followed, and nothing that stands there is replaced.
NewDirectory MakeOwnedDirectory(const SString& path, mode_t mode, uid_t owner, gid_t group);
