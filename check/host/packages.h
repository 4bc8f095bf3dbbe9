// What dpkg knows of a path; nothing where there is no dpkg.
#pragma once

#include "support/text/sstring.h"

/// The package that has the path, also where a diversion gives that another place; empty where none has.
SString PackageOf(const SString& path);
/// The name in update-alternatives(1) that makes the path a link; empty if there is none.
SString AlternativeOf(const SString& path);
bool IsDiverted(const SString& path);
