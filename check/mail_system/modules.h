// New databases of a release that cannot be put into service.
#pragma once

#include "support/text/sstring_list.h"

/// The new versions that cannot be read; the next run ends at the first of them.
SStringList DamagedNewVersions();
