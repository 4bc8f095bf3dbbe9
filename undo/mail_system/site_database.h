// The databases that a record tells of.
#pragma once

#include "support/text/sstring.h"

/// The name under which Sdbfile finds it, of a path or a name; empty for one of another data directory.
SString SiteDatabase(const SString& file);

/// "FILE belongs to another data directory", which the configuration named when the run was made.
SString OfAnotherSite(const SString& file);
