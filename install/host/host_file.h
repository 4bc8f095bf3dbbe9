// Rewriting a file of the host in place, so that neither a failure nor a kill at any moment loses it.
//
// The old contents go to a numbered backup beside the file ("inetd.conf.bak", ".bak1" ...) that carries the
// file's owner and mode and is on the disk before the file is touched. The file itself is rewritten in place:
// its owner, links, access lists and extended attributes stay. The caller keeps signals off
// (CriticalSection).
#pragma once

#include <functional>
#include <optional>

#include "support/text/sstring_list.h"

/// The lines, each with its line end, read with root's rights. Nothing where the path cannot be read or leads
/// to anything but a regular file.
std::optional<SStringList> ReadHostFile(const SString& path);

using LineEdit = std::function<SStringList(SStringList)>;

/// Replaces the file's lines by what the edit makes of them. False on any failure: as long as the file was
/// not touched, it has its old mode again and no backup is left; after a write error the old bytes are put
/// back where the disk takes them, and the backup stays in any case.
bool RewriteHostFile(const SString& path, const LineEdit& edit);
