// Who may do what with a file, as the record keeps it.
#pragma once

#include <sys/stat.h>

#include "install/record/change.h"
#include "support/system/descriptor.h"

/// The extended attribute that is a file's access list (acl(5)).
inline constexpr const char* kAccessListAttribute = "system.posix_acl_access";

/// Of an open file (not O_PATH). Nothing if it cannot be told.
std::optional<change::Access> AccessOf(const Descriptor& file);
/// The same, with the status that it had when it was opened.
std::optional<change::Access> AccessOf(const Descriptor& file, const struct stat& status);
/// Of what the path leads to, without opening it, which would drop this process's locks on it later (POSIX).
std::optional<change::Access> AccessOf(const SString& path);
