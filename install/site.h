// The site's facts: what the system configuration file, the kernel, the resolver and the password and group
// databases say about this host, as the program-wide settings and in the environment.
#pragma once

#include "support/text/sstring_list.h"

/// Sets the site's settings and exports them. False if one cannot be found; the reason has been printed.
bool DetermineSite();

/// The users whose processes can be the mail system's, root and the mail owner: ids in decimal.
SStringList MailSystemUsers();

/// The node name with its own domain replaced by the configured one.
SString FullHostName(const SString& node_name, const SString& domain);
