// A file's access list (acl(5)) as the record keeps it.
#pragma once

#include "support/system/descriptor.h"

/// The raw value of "system.posix_acl_access" in hexadecimal; empty: without one. The permission bits follow
/// from it.
bool SetAccessList(const Descriptor& file, const SString& hexadecimal);
