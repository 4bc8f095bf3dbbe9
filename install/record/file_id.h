// Which file a name leads to, so that another one under the same name is told apart later.
#pragma once

#include <optional>

#include "install/record/change.h"

/// Of a regular file, links not followed. Nothing of anything else.
std::optional<change::FileId> FileIdOf(const SString& path);
bool IsThatFile(const SString& path, const change::FileId& id);
/// Whether both paths lead to one file, which has two names then; links are followed.
bool IsSecondName(const SString& path, const SString& other);
