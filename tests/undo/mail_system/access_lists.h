// Access lists, as "system.posix_acl_access" holds them (linux/posix_acl_xattr.h), in hexadecimal.
#pragma once

#include "support/text/sstring.h"

/// The login 33 may read and write.
inline const SString kListWithAnother =
    "02000000"
    "01000600ffffffff"
    "0200060021000000"
    "04000600ffffffff"
    "10000600ffffffff"
    "20000000ffffffff";
