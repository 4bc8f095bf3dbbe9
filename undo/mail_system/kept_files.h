// Files that were kept beside the record, and making them anew.
#pragma once

#include <optional>

#include "undo/way_back.h"

/// The copy's bytes, in the folder of its run, read as root. Nothing if there is none, or it is not root's.
std::optional<SString> KeptBytes(const change::KeptFile& kept, const SString& folder);

/// The file's bytes, read as the effective user and not through a link. Nothing if there is none, or more
/// than 256 MiB.
std::optional<SString> BytesOf(const SString& path);

/// Makes the file whole or not at all, in place of one that is there: by root in a directory that the
/// effective user may write, under the hidden name ".NAME.undo", synced, given to its owner, and renamed by
/// the effective user. What a killed Undo left there is replaced.
bool MakeAnew(const SString& path, const SString& bytes, const change::Access& access);
