// The host's names and addresses.
#pragma once

#include "support/text/sstring_list.h"

/// The kernel's node name (uname); empty when it cannot be told.
SString NodeName();
/// IPv4 addresses in dotted form, in the resolver's order; empty when the name does not resolve.
SStringList GetHostByName(const SString& name);
/// RFC 1123 host-name syntax: labels of letters, digits and inner hyphens, one suffices; 63 characters a
/// label, 253 in all; no trailing dot, no all-digit last label.
bool IsValidDomain(const SString& name);
