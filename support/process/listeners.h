// Which processes listen on a TCP port, from /proc (Linux), and not from ss, whose output a process's name
// can garble.
//
// Whoever owns a process chooses its name. As root all processes are seen, otherwise only one's own.
#pragma once

#include <sys/types.h>

#include <vector>

#include "support/text/sstring_list.h"

struct Listener {
    pid_t id = 0;
    SString name;         // as ps shows it
    SStringList cgroups;  // lines of /proc/PID/cgroup

    bool operator==(const Listener&) const = default;
};

/// Whether any socket of this network listens on the port.
bool IsListenedOn(const SString& port);
/// Those that listen, without the children that only inherited it. Empty, too, if they may not be seen.
std::vector<Listener> ListenersOn(const SString& port);

/// The sockets that listen on the port, as decimal inodes, from lines of /proc/net/tcp:
/// "   0: 00000000:0019 00000000:0000 0A 00000000:00000000 00:00000000 00000000     0        0 12345 ...".
SStringList SocketsOn(const SString& port, SStringList lines);
/// The unit in the lines of a /proc/PID/cgroup: "0::/system.slice/exim4.service" gives "exim4.service". It is
/// the first below the slices (systemd.slice(5)): whoever it delegates its group to names those below it.
/// Empty if there is none.
SString UnitIn(SStringList cgroups);
/// The container's id or name there: "0::/docker/4f5e...", "0::/machine.slice/libpod-4f5e....scope". Empty if
/// there is none.
SString ContainerIn(SStringList cgroups);
