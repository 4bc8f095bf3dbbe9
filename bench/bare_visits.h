// The system calls that visits owe, and nothing around them: with the visits' looks and the notice, one
// change to the user and one back, and no change of groups, as all the site's users have the same ones.
#pragma once

#include "bench/throw_away_site.h"

bool VisitBare(const ThrowAwaySite& site, int logins);
