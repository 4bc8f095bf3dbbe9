// The system configuration file: lines of a key, an equals sign and a value, without blanks around the sign.
//
//     DomainName=example.com
#pragma once

#include "support/text/sstring_list.h"

/// The value of the key: what stands after "=" up to the first blank. The first line that begins with the key
/// decides; when it is not of that form, nothing further is searched and the value is empty. So is one that
/// holds a NUL, as system calls would see another value than the one checked here.
SString ReadConfig(const SStringList& lines, const SString& key);
