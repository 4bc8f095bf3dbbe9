// Reaching by path what root is to change, though others may have put links on the way: a path is walked name
// by name, and a symbolic link is followed only if it is root's and stands where nobody else could have put
// or exchanged it: in a directory of root's that only root can write, or that is sticky.
//
//     /var/spool/mail/     goes on at /var/mail, by the link that Debian has there
//     /home/anna/x/y       is refused if x is a link of anna's
//
// What was reached is held by a descriptor, so that what was looked at is what is changed.
#pragma once

#include <sys/stat.h>

#include <optional>

#include "support/system/descriptor.h"

/// A name in a directory that is held; there need not be anything of that name.
struct TrustedPlace {
    Descriptor directory;  // O_PATH
    SString name;

    /// Of what has the name, which may be a link.
    std::optional<struct stat> Status() const;
    /// For functions that take a path: another name in the same directory, too, keeps to it (Linux, /proc).
    SString Path() const;
};

/// The path's last name, whatever it is, in its directory. Nothing, with errno: ENOENT without that
/// directory, ELOOP for a link that is not followed.
std::optional<TrustedPlace> FindTrusted(const SString& path);
/// The directory, to be read and changed; the path's last name is walked as the others. None, with errno, as
/// above.
Descriptor OpenTrustedDirectory(const SString& path);
