// The way back of each kind of change: how it stands now, and taking it back. Both look again at what they
// are about, as anything may have changed since: what is not as the run left it is somebody's work, and is
// left alone. Taking back what is back already does nothing, so that another Undo finishes one that was
// interrupted.
#pragma once

#include "install/record/change.h"

class LaterRuns;
struct Entry;

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
    const std::vector<Change>* changes =
        nullptr;  // all of the run's: later ones may have changed the same again
    const LaterRuns* later = nullptr;
    const std::vector<Entry>* entries = nullptr;  // of its changes, those that are not taken back yet
};

enum class Standing {
    AsBefore,  // nothing to take back: the change was not made, or is back
    AsLeft,    // will be taken back
    Kept,      // stays by design, or as it was not asked for
    ByHand,    // left to the administrator
    Changed,   // somebody's work by now: left alone; the text tells both versions' paths
    Later,     // a later run changed the same again: left alone until that is taken back
    Unknown,   // cannot be told; the text tells why
};

/// Text in plain words, one line, other people's bytes made printable; empty with AsBefore and ByHand. With
/// AsLeft it tells what Undo would do ("Put /etc/inetd.conf back from /etc/inetd.conf.bak, and hang up
/// inetd").
struct Finding {
    Standing standing = Standing::AsBefore;
    SString text = {};
    SStringList by_hand =
        {};  // what is to be done, a line each; of an AsLeft, what is left of it nevertheless
};

/// Another time it may stand otherwise, though nobody has touched it.
inline bool MayChange(Standing standing) {
    return standing == Standing::Later || standing == Standing::Unknown;
}

/// What is left alone or to the administrator, a line each. Of an AsLeft nothing: taking it back tells.
inline SStringList LeftOf(const Finding& finding) {
    if (finding.standing == Standing::ByHand) return finding.by_hand;
    const bool is_alone = finding.standing == Standing::Changed || MayChange(finding.standing);
    return is_alone ? finding.text : SStringList();
}

/// What came of it: the text tells what was left alone or failed; empty if nothing was.
struct TakenBack {
    bool is_whole = true;  // false: trying again may help
    SStringList left = {};
    bool is_interrupted = false;  // by a signal, where many go together; it is not whole then
    bool is_known = true;         // false: some of many wait for a later run's way back
};

// Each kind has a pair LookAt and TakeBack (undo/ways.h declares all), in a file of its own: undo/host/
// (files, links, directories, processes) and undo/mail_system/ (databases, accounts, messages, homes and
// maildrops). As the mail owner, with root's rights for single actions (AsRoot). LookAt is called for the
// whole plan first, and again right before each TakeBack.
