// The least that visiting homes and maildrop files costs: the system calls alone.
#pragma once

#include "bench/throw_away_site.h"

bool VisitBare(const ThrowAwaySite& site, int logins);
