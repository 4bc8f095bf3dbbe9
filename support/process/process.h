// The host's processes and listening sockets, as its own tools list them. Parsing stands apart from running,
// so that recorded outputs can be parsed. Only KillProgram and StillRunning change the effective user, and
// give it back: a host may hide other users' processes, so the others are to be called as root.
//
// Whoever owns a process chooses its name, but not its real user: of a link to a set-user-ID program, any
// name that the link has, root is only the effective one.
#pragma once

#include <functional>
#include <optional>

#include <sys/types.h>

#include "support/text/sstring_list.h"

/// Ports of listening TCP sockets as text, in the order of the output, duplicates possible.
SStringList BoundSockets();
/// One entry per process: its id, a blank and its name.
SStringList ReadProcessInfo();
/// One entry per process: its id, a blank and its real user's id.
SStringList ReadProcessUsers();
/// The entries of ReadProcessInfo whose process has one of these real users (ids in decimal) now.
SStringList ProcessesOf(const SStringList& entries, const SStringList& users);
/// Those of ReadProcessInfo's entries that are there now: after a while, another program may have the id.
SStringList StillRunning(const SStringList& entries);
/// Sees the entries that are signalled next, as far as they are still running when it returns.
using Witness = std::function<void(const SStringList& entries)>;
/// Sends the signal to every process of exactly this name (an expression, bound to the whole name) with an id
/// above 10, as root. True when one was reached.
bool KillProgram(const SString& name, int signal, const Witness& witness = {});
/// The same, but only to processes of these users.
bool KillProgramOf(const SStringList& users, const SString& name, int signal, const Witness& witness = {});
/// KillProgram's two halves, on entries of ReadProcessInfo. A name that is a malformed expression matches
/// none.
SStringList ProcessesNamed(const SStringList& entries, const SString& name);
bool SignalProcesses(const SStringList& entries, int signal);
/// The process of an entry that SignalProcesses signals; nothing for one that it leaves alone.
std::optional<pid_t> SignalledProcess(const SString& entry);
/// The name in an entry.
SString ProcessName(const SString& entry);

SStringList PortsFromNetstat(SStringList lines);       // "tcp 0 0 *.25 *.* 0 0 LISTEN" (System V)
SStringList PortsFromSs(SStringList lines);            // "LISTEN 0 128 [::]:25 [::]:*" (iproute2)
SStringList PortsFromLinuxNetstat(SStringList lines);  // "tcp6 0 0 :::25 :::* LISTEN" (net-tools)
SStringList ProcessesFromPs(SStringList lines);        // "  PID TTY TIME CMD" and rows
SStringList UsersFromPs(SStringList lines);            // rows of "  123  1001"
