// Repairs a user's maildrop file: the mail system delivers to it without root's rights, so it must belong to
// the user and the mail group, mode 0660. The directory may be world-writable: only a regular file with one
// link is changed, and only if the opened file is the one that lstat saw: a planted link would hand its
// target to the user. One that a third login made (neither the user nor root) may still be open there: if it
// is empty, a new file takes its place, and the maker's descriptor leads nowhere. Whatever is repaired loses
// its access list, which may name others.
#pragma once

#include <sys/stat.h>

#include "support/system/identity.h"

/// What its user and the mail group may do, and what root alone may until a new one is its user's.
inline constexpr mode_t kMaildropMode = 0660;
inline constexpr mode_t kMaildropModeUntilGiven = 0600;

enum class Maildrop {
    Fine,       // correct, missing, or (prescribed) left alone as it was exchanged or cannot be opened
    Suspicious  // a link, a hard link or a special file: left alone
};

/// A regular file with one link.
bool IsPlainMaildrop(const struct stat& status);
/// Whether a third login made it, neither the user nor root.
bool IsAnothersMaildrop(const struct stat& status, uid_t user);

/// Needs root's rights.
Maildrop RepairMaildrop(const SString& path, const Identity& user, gid_t mail_group);
