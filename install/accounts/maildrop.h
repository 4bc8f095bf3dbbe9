// A user's maildrop file, to which the mail system delivers without root's rights: it must belong to the user
// and the mail group, mode 0660. The directory may be writable by everybody, so what stands there is looked
// at twice: only a regular file with one name is ever changed, and only if it is the one that was looked at
// first.
#pragma once

#include "support/system/identity.h"

enum class Maildrop {
    Fine,       // right now, missing, or left alone as it could not be opened or was exchanged meanwhile
    Suspicious  // a link, a hard link or a special file: not touched
};

/// Takes root's rights itself.
Maildrop RepairMaildrop(const SString& path, const Identity& user, gid_t mail_group);
