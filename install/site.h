// The site's facts: what the system configuration file, the kernel, the resolver and the password and group
// databases say about this host, as the program-wide settings and in the environment.
#pragma once

#include <span>

#include "support/text/sstring_list.h"

/// What may be wrong with the site.
enum class SiteFault {
    NoConfiguration,
    Unreadable,
    NoHostName,
    NoAddress,
    Incomplete,
    NoOwner,
    NoGroup,
};

struct SiteFact {
    bool (*find)();   // sets the settings, prints nothing
    SiteFault fault;  // where it is not found
};

/// In the order in which they are looked for: each needs those before it, but none needs the address.
std::span<const SiteFact> SiteFacts();
/// Finds them all. False if one is missing; the reason has been printed.
bool DetermineSite();

/// The keys that the system configuration file has no value for.
SStringList MissingKeys();

/// The users whose processes can be the mail system's, root and the mail owner: ids in decimal.
SStringList MailSystemUsers();

/// The node name with its own domain replaced by the configured one.
SString FullHostName(const SString& node_name, const SString& domain);
