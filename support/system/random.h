// Random numbers that nobody can guess.
#pragma once

/// 0 to n-1, without bias, from the kernel's random source. n must be above 0.
int RandomInt(int n);
