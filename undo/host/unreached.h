// What is said of a path that was not reached.
#pragma once

#include "undo/way_back.h"

/// By errno, after FindTrusted and OpenTrustedDirectory: that directory is gone, or may not be walked.
Finding Unreached(const SString& path);
/// True where only something on the way is not there.
bool IsGone();
