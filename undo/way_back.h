// The way back of each kind of change: how it stands now, and taking it back. Both look again at what they are
// about, as anything may have changed since: what is not as the run left it is somebody's work, and is left alone.
// Taking back what is back already does nothing, so that an interrupted Undo is finished by another.
#pragma once

#include "install/record/change.h"

struct UndoOptions {
    bool accounts = false;  // takes the run's accounts and messages back, too
    bool units = false;     // starts the systemd units that were stopped
};

/// The run whose changes are taken back.
struct UndoneRun {
    SString kept;   // the folder of copies beside its record, ends in "/"
    SString key;    // of keyed checksums; empty if it is lost
    SString begun;  // UTC, as in the record
    SString next;   // when the next run began; empty if there is none
    UndoOptions options;
};

enum class Standing {
    AsBefore,  // nothing to take back: the change was not made, or is back
    AsLeft,    // will be taken back
    Kept,      // stays by design, or as it was not asked for; the text tells what to do by hand, if anything
    Changed,   // somebody's work by now: left alone; the text tells both versions' paths
    Unknown,   // cannot be told; the text tells why
};

/// Text in plain words, one line, other people's bytes made printable; empty with AsBefore. With AsLeft it tells
/// what Undo would do ("Put /etc/inetd.conf back from /etc/inetd.conf.bak, and hang up inetd").
struct Finding {
    Standing standing = Standing::AsBefore;
    SString text = {};
};

/// What came of it: the text tells what was left alone or failed; empty if nothing was.
struct TakenBack {
    bool is_whole = true;  // false: trying again may help
    SStringList left = {};
};

// Each kind has this pair, in a file of its own: undo/host/ (files, links, directories, processes) and
// undo/mail_system/ (databases, accounts, messages, homes and maildrops). As root.
//
//     Finding LookAt(const change::ModeSet& change, const UndoneRun& run);
//     TakenBack TakeBack(const change::ModeSet& change, const UndoneRun& run);
