// Checksums that tell whether something is still as it was.
#pragma once

#include "support/text/sstring.h"

/// SHA-256 in hexadecimal (FIPS 180-4); keyed: of the key and the text after it.
SString Checksum(const SString& bytes);
SString KeyedChecksum(const SString& key, const SString& bytes);

/// Two lower-case digits a byte.
SString Hexadecimal(const SString& bytes);
