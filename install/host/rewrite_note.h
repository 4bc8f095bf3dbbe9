// A note beside a host's file while that is rewritten, from which the next run finishes what a kill or a
// power failure cut short.
//
// The note of /etc/inetd.conf is /etc/.inetd.conf.rewrite: the file's mode and the lengths of the old and the
// new text in decimal, then both texts:
//
//     420 8 9
//     smtp ...#smtp ...
//
// It appears whole or not at all, and is on the disk before the file is touched. Once the file has its new
// text, the note's name ends in ".rewritten" instead: what an administrator removes from then on stays
// removed, and only the daemon may not know of the text yet.
#pragma once

#include <sys/types.h>

#include <optional>

#include "support/text/sstring.h"

struct Rewrite {
    mode_t mode = 0;  // before write permission was added
    SString before;
    SString after;
};

struct FoundNote {
    bool is_readable = true;         // false: there is a note, but it cannot be read now
    std::optional<Rewrite> rewrite;  // nothing without a note
    bool is_written = false;         // the file had its new text
};

/// As root. False on any failure: RemoveNote then removes what there is of it.
bool WriteNote(const SString& path, const Rewrite& rewrite);
/// The file has its new text, on the disk.
bool MarkWritten(const SString& path);
void RemoveNote(const SString& path);
/// What a run leaves that is killed while it writes the note.
void RemoveDraft(const SString& path);
bool HasDraft(const SString& path);
/// As root. Only a regular file of root's that nobody else can write is a note: whoever owns the directory
/// may put others there. One with a second name could be another file of root's, and is unreadable.
FoundNote ReadNote(const SString& path);

/// Whether the piece is the text cut short: it lacks the end, or has NULs in places, which some file systems
/// leave after a power failure.
bool IsCutPiece(const SString& piece, const SString& text);
