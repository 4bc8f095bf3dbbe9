// Rewriting a file of the host in place, so that neither a failure nor a kill at any moment loses it.
//
// The old contents go to a numbered backup beside the file ("inetd.conf.bak", ".bak1" ...), with the file's
// owner and mode, synced before the file is touched. The file is rewritten in place, so that its owner,
// links, access lists and extended attributes stay. The caller holds a CriticalSection.
#pragma once

#include <functional>
#include <optional>

#include "support/text/sstring_list.h"

/// Read as root: the lines, each with its line end. Nothing if the path is no readable regular file.
std::optional<SStringList> ReadHostFile(const SString& path);

using LineEdit = std::function<SStringList(SStringList)>;

/// As root: replaces the file's lines by the edited ones. False on any failure. If the file was not touched
/// yet, it has its old mode again and there is no backup. After a write error the old bytes are put back if
/// possible, and the backup stays.
bool RewriteHostFile(const SString& path, const LineEdit& edit);
