// The environment, the host's names and addresses, and the clock.
#pragma once

#include "support/sstring_list.h"

SString GetEnv(const char* name);
void PutEnv(const SString& name, const SString& value);
/// The kernel's node name (uname); nothing in the string when it cannot be told.
SString NodeName();
/// IPv4 addresses in dotted form, in the resolver's order; empty when the name does not resolve.
SStringList GetHostByName(const SString& name);
/// RFC 1123 host-name syntax: labels of letters, digits and inner hyphens, one suffices; 63 characters a
/// label, 253 in all; no trailing dot, no all-digit last label.
bool IsValidDomain(const SString& name);

/// The local time as RFC 822 section 5 has it, with a four-digit year (RFC 1123):
/// "Sat, 21 Nov 2026 14:05:09 +0100".
SString RFC822Date();
/// The current time in a compact form that is safe in file names: "20261121140509123456" (UTC, microseconds);
/// never the same twice in a process.
SString MessageIdDate();
SString ProcessIdString();
/// 0 to n-1, without bias, from the kernel's random source. n must be above 0.
int RandomInt(int n);
