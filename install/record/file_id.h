// Which file a name leads to, so that another one under the same name is told apart later.
#pragma once

#include <optional>

#include "install/record/change.h"

/// Of a regular file, links not followed. Nothing of anything else.
std::optional<change::FileId> FileIdOf(const SString& path);
bool IsThatFile(const SString& path, const change::FileId& id);
