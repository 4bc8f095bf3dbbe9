// A file's access list (acl(5)) as the record keeps it.
#pragma once

#include "support/system/descriptor.h"

/// The raw value of "system.posix_acl_access" in hexadecimal, from which the permission bits follow; empty:
/// without a list.
bool SetAccessList(const Descriptor& file, const SString& hexadecimal);
