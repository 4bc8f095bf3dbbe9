// The site's facts: what the system configuration file, the kernel, the resolver and the password and group
// databases say about this host, as the program-wide settings and in the environment.
#pragma once

#include "support/text/sstring.h"

/// Sets the site's settings and exports them. False when one cannot be found; the message is printed.
bool DetermineSite();

/// The node name up to its first dot, a dot, and the domain: the host's own domain gives way to the
/// configured.
SString FullHostName(const SString& node_name, const SString& domain);
