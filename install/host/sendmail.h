// Stopping sendmail and putting the emulator in its place: the workers of KillSendmail and InstallSendmail.
#pragma once

#include "support/text/sstring_list.h"

/// Of ReadProcessInfo's entries those whose name ends in "sendmail".
SStringList SendmailProcesses(SStringList entries);

/// What the link in /usr/lib holds: relative, so that it leads to the emulator wherever the root is mounted.
/// "/opt/tern.harbor/" gives "../../opt/tern.harbor/bin/sendmail".
SString EmulatorLink(const SString& program_dir);
/// Whether both paths lead to the same file, looked at with root's rights.
bool LeadsTo(const SString& path, const SString& emulator);

/// Whether a listing of the queue says that it is empty: in less than two lines ("Mail queue is empty"), or
/// in sendmail's own two ("/var/spool/mqueue is empty", "Total requests: 0").
bool IsEmptyQueue(const SStringList& listing);
/// A listing of more than 20 lines, cut to its first 15 and a note of how many are left out.
SStringList CutListing(SStringList listing);

/// Makes the link where nothing stands; a dangling link gives way, a file never does. As root.
bool MakeLink(const SString& path, const SString& link);
/// Renames the old program to the first free name ("sendmail.bak", "sendmail.bak1" ...), then makes the link.
/// As root. When only the link fails, the program stays under the backup's name.
bool ReplaceByLink(const SString& path, const SString& link);
