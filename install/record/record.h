// The record of a run: a file in /var/lib/tern.harbor-install/runs (gstr_Runs), where the package has made
// that directory; what Undo goes by, and the log of what was done. Each change is a line that is written
// before the change is made, and so is there whatever kills the run.
//
//     /var/lib/tern.harbor-install/runs/20261122T170405Z-4711        mode 0600, begun with the first change
//     /var/lib/tern.harbor-install/runs/20261122T170405Z-4711.kept/  mode 0700: copies of files, and the key
//
// Where the directory is missing or not root's alone, and for good after a failure to write, nothing is
// recorded and nothing is said: the installation goes on. A record that failed has no last line
// (change::RunEnded).
#pragma once

#include "install/record/access.h"
#include "install/record/change.h"
#include "install/record/checksum.h"
#include "support/system/descriptor.h"

/// Names the record after the time and this process; it is begun with the first change. Children that are
/// forked later record in the same file. Empty: nothing is recorded.
void NameRecord(const SString& directory);

/// Whether there is a record to write to, or could be: what a change was is worth finding out.
bool IsRecording();

/// As root, from any identity: the line is on the disk.
void RecordChange(const Change& change);
/// For changes of which there are as many as logins: not synced, so that the line survives a kill, but may be
/// lost in a power failure.
void RecordWithoutSync(const Change& change);

/// A copy of the file's bytes (from its beginning) beside the record, and its access. Nothing in `kept` on
/// failure, after which nothing is recorded any more.
change::KeptFile KeepBesideRecord(const Descriptor& file, const SString& name);

/// 32 random bytes, the key of digests that could be guessed; empty where nothing is recorded. The same for
/// the run, in the process that named the record.
SString RecordKey();

/// For good: what changes next cannot be told. Without its last line the record is known not to be whole.
void StopRecording();

/// The last line, with the status that the process will exit with; none where nothing was recorded.
void EndRecord(int status);
