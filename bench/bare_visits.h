// Visits homes and maildrop files without making accounts, as a baseline: few system calls, but not a lower
// bound, as it changes identities the way the program does.
#pragma once

#include "bench/throw_away_site.h"

bool VisitBare(const ThrowAwaySite& site, int logins);
