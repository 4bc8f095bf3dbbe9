// Making a directory that belongs to another user. It is made as NAME.new and renamed when it has its owner,
// so that a killed run leaves nothing half done under the real name.
#pragma once

#include <sys/types.h>

#include "support/system/descriptor.h"
#include "support/text/sstring.h"

enum class NewDirectory {
    Made,
    NotMade,   // what was at the path is still there, or somebody exchanged what was made
    NotOwned,  // made, but owner and group could not be set
};

/// As root: the directory with this mode (less the process's mask), owner and group. Never follows a link at
/// the path, and never replaces anything.
NewDirectory MakeOwnedDirectory(const SString& path, mode_t mode, uid_t owner, gid_t group);

/// The directory at the path, if it is the effective user's own and empty, and no link: it may be given away.
Descriptor OpenOwnEmptyDirectory(const SString& path);
