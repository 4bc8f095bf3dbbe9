// Stopping sendmail and putting the emulator in its place: the workers of KillSendmail and InstallSendmail.
#pragma once

#include "support/text/sstring_list.h"

/// The entries of ReadProcessInfo whose name ends in "sendmail".
SStringList SendmailProcesses(SStringList entries);

/// The text of the link in /usr/lib: relative, so that it works wherever the root is mounted.
/// "/opt/tern.harbor/" gives "../../opt/tern.harbor/bin/sendmail".
SString EmulatorLink(const SString& program_dir);
/// As root: whether both paths resolve to the same file.
bool LeadsTo(const SString& path, const SString& emulator);

/// Whether a listing says that the queue is empty: fewer than two lines ("Mail queue is empty"), or
/// sendmail's own two ("/var/spool/mqueue is empty", "Total requests: 0").
bool IsEmptyQueue(const SStringList& listing);
/// A listing of more than 20 lines, cut to its first 15 and a note of how many are left out.
SStringList CutListing(SStringList listing);

/// As root: makes the link. Replaces a dangling link, but never a file.
bool MakeLink(const SString& path, const SString& link);
/// As root: renames the old program to the first free name ("sendmail.bak", "sendmail.bak1" ...), then makes
/// the link. If only the link fails, the program stays under the backup's name.
bool ReplaceByLink(const SString& path, const SString& link);
