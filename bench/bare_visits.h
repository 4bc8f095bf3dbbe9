// What visiting homes and maildrop files costs without accounts: few system calls, but identities are changed
// as the program changes them, so this is no lower bound.
#pragma once

#include "bench/throw_away_site.h"

bool VisitBare(const ThrowAwaySite& site, int logins);
