// Rewriting a file of the host in place, so that neither a failure nor a kill at any moment loses it.
//
// The old contents go to a numbered backup beside the file ("inetd.conf.bak", ".bak1" ...), with the file's
// owner and mode, and both texts to a note (rewrite_note.h), all synced before the file is touched. The file
// is rewritten in place, so that its owner, links, access lists and extended attributes stay. The note goes
// last, after who must know of the new text was told; where one is found, a killed run's rewrite is finished,
// with that, before anything is decided about the file. The caller of RewriteHostFile holds a
// CriticalSection.
#pragma once

#include <functional>
#include <optional>

#include "support/text/sstring_list.h"

/// Tells a daemon, say, of the new text, given the one from before. It may be told twice, but never not at
/// all.
using Announcement = std::function<void(const SString& before)>;

/// As root: finishes a killed run's rewrite where the file is a piece of the new text (or of the old one, if
/// that was being put back), and gives it its old mode again. A file that somebody has edited since is left
/// alone. Announces what has not the old text. To be called before anything else looks at the file. False if
/// the file is still cut, or that cannot be told.
bool FinishRewrite(
    const SString& path, const Announcement& announce = [](const SString&) {});

/// Read as root: the lines, each with its line end. Nothing if the path is no readable regular file.
std::optional<SStringList> ReadHostFile(const SString& path);

using LineEdit = std::function<SStringList(SStringList)>;

/// As root, after FinishRewrite: replaces the file's lines by the edited ones. False on any failure, and
/// where somebody has edited the file meanwhile. If the file was not touched yet, it has its old mode again
/// and there is no backup. After a write error the old bytes are put back, or else the note stays for the
/// next run; the backup stays.
bool RewriteHostFile(
    const SString& path, const LineEdit& edit, const Announcement& announce = [](const SString&) {});
