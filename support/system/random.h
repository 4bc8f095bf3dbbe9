// Random numbers that nobody can guess.
#pragma once

#include "support/text/sstring.h"

/// 0 to n-1, without bias, from the kernel's random source. n must be above 0.
int RandomInt(int n);
SString RandomBytes(size_t count);
