// Who may do what with a file, as the record keeps it.
#pragma once

#include "install/record/change.h"
#include "support/system/descriptor.h"

/// Of an open file (not O_PATH). Nothing if it cannot be told.
std::optional<change::Access> AccessOf(const Descriptor& file);
/// Of what the path leads to, without opening it, which would drop this process's locks on it later (POSIX).
std::optional<change::Access> AccessOf(const SString& path);
