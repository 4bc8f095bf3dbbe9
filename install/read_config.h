// The system configuration file: lines of a key, an equals sign and a value, without blanks around the sign.
//
//     DomainName=example.com
#pragma once

#include "support/text/sstring_list.h"

/// The value of the key, up to the first blank. Only the first line that begins with the key is looked at
/// (prescribed); the value is empty if that line has another form. It is also empty if it holds a NUL,
/// because system calls would see a shorter value.
SString ReadConfig(const SStringList& lines, const SString& key);
