#include "support/process/process.h"

#include <algorithm>
#include <csignal>
#include <limits>

#include "support/process/command.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "support/text/pattern.h"

namespace {

constexpr long kLastSystemProcess = 10;

/// A host's tool, and the parser of its output.
struct Probe {
    const char* program;
    const char* arguments;
    SStringList (*parse)(SStringList);
};

// The first program of a table that exists on the host is run.
constexpr Probe kSocketProbes[] = {
    // SunOS and IRIX
    {"/usr/etc/netstat", "-an", PortsFromNetstat},
    // Linux with iproute2
    {"/usr/bin/ss", "-Hltn", PortsFromSs},
    {"/bin/ss", "-Hltn", PortsFromSs},
    {"/usr/sbin/ss", "-Hltn", PortsFromSs},
    // Linux with net-tools
    {"/usr/bin/netstat", "-ltn", PortsFromLinuxNetstat},
    {"/bin/netstat", "-ltn", PortsFromLinuxNetstat},
};
constexpr Probe kProcessProbes[] = {
    {"/usr/bin/ps", "-e", ProcessesFromPs},
    {"/bin/ps", "-e", ProcessesFromPs},
};
// Without names, which are anybody's choice and could hold blanks and numbers.
constexpr Probe kUserProbes[] = {
    {"/usr/bin/ps", "-e -o pid= -o ruid=", UsersFromPs},
    {"/bin/ps", "-e -o pid= -o ruid=", UsersFromPs},
};

template <size_t N>
SStringList RunFirst(const Probe (&probes)[N]) {
    for (const Probe& probe : probes) {
        if (!IsRegular(probe.program)) continue;
        return probe.parse(ReadCommand(SString(probe.program) + " " + probe.arguments));
    }
    return {};
}

/// The witness may take its time.
bool Signal(const SStringList& entries, int signal, const Witness& witness) {
    if (!witness) return SignalProcesses(entries, signal);
    witness(entries);
    return SignalProcesses(StillRunning(entries), signal);
}

/// KillProgram's condition.
bool IsName(const SString& name) {
    return name.Matches("\\w");
}

}  // namespace

SStringList BoundSockets() {
    return RunFirst(kSocketProbes);
}

SStringList ReadProcessInfo() {
    return RunFirst(kProcessProbes);
}

SStringList ReadProcessUsers() {
    return RunFirst(kUserProbes);
}

SStringList ProcessesOf(const SStringList& entries, const SStringList& users) {
    SStringList processes;
    if (entries.IsEmpty()) return processes;
    const SStringList owned = ReadProcessUsers();
    for (const SString& entry : entries) {
        const SString id(entry.ToNumber());
        if (std::ranges::any_of(users,
                                [&](const SString& user) { return owned.Contains(id + " " + user); })) {
            processes.Push(entry);
        }
    }
    return processes;
}

SStringList StillRunning(const SStringList& entries) {
    const AsRoot root;
    const SStringList now = ReadProcessInfo();
    SStringList running;
    for (const SString& entry : entries) {
        if (now.Contains(entry)) running.Push(entry);
    }
    return running;
}

bool KillProgram(const SString& name, int signal, const Witness& witness) {
    if (!IsName(name)) return false;
    const AsRoot root;
    return Signal(ProcessesNamed(ReadProcessInfo(), name), signal, witness);
}

bool KillProgramOf(const SStringList& users, const SString& name, int signal, const Witness& witness) {
    if (!IsName(name)) return false;
    const AsRoot root;
    return Signal(ProcessesOf(ProcessesNamed(ReadProcessInfo(), name), users), signal, witness);
}

SString ProcessName(const SString& entry) {
    return entry.S("\\A.* ", "");
}

SStringList ProcessesNamed(const SStringList& entries, const SString& name) {
    SStringList named;
    // "a)|(b" would break out of the group below, so the name must compile by itself.
    if (!Pattern(name.Bytes()).IsValid()) return named;
    const Pattern whole("\\A(?:" + name.Bytes() + ")\\z");
    for (const SString& entry : entries) {
        const SString process = ProcessName(entry);
        const auto match = whole.Find(process.Bytes());
        // "(*ACCEPT)" would end the match before the "\\z".
        if (match && match->front().end == process.Length()) named.Push(entry);
    }
    return named;
}

std::optional<pid_t> SignalledProcess(const SString& entry) {
    const long id = entry.ToNumber();
    if (id <= kLastSystemProcess || id > std::numeric_limits<pid_t>::max()) return std::nullopt;
    return static_cast<pid_t>(id);
}

bool SignalProcesses(const SStringList& entries, int signal) {
    bool reached = false;
    for (const SString& entry : entries) {
        const auto id = SignalledProcess(entry);
        if (id && kill(*id, signal) == 0) reached = true;
    }
    return reached;
}

SStringList PortsFromNetstat(SStringList lines) {
    return lines.Grep(R"(s/^tcp(\s+\S+){3}\.(\d+)\s+.*LISTEN\s*$/$2/)");
}

SStringList PortsFromSs(SStringList lines) {
    return lines.Grep(R"(s/^LISTEN(\s+\d+){2}\s+\S*:(\d+)\s.*\s*$/$2/)");
}

SStringList PortsFromLinuxNetstat(SStringList lines) {
    return lines.Grep(R"(s/^tcp6?(\s+\d+){2}\s+\S*:(\d+)\s+.*LISTEN\s*$/$2/)");
}

SStringList ProcessesFromPs(SStringList lines) {
    lines.Shift();  // the heading
    return lines.Grep(R"(s/^\s*(\d+).*\s(\S+)\s*$/$1 $2/)");
}

SStringList UsersFromPs(SStringList lines) {
    return lines.Grep(R"(s/^\s*(\d+)\s+(\d+)\s*$/$1 $2/)");
}
