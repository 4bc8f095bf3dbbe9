#include "install/record/signalled.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <map>

#include "install/record/record.h"
#include "support/process/listeners.h"
#include "support/process/proc.h"
#include "support/process/process.h"
#include "support/process/units.h"
#include "support/system/identity.h"

namespace {

using Processes = std::vector<change::Process>;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kForAll{1000};

uid_t UserOf(int64_t id) {
    SStringList lines = Lines(ProcText(id, "status"));
    return static_cast<uid_t>(lines.Grep("s/^Uid:\\s*(\\d+)\\s.*/$1/").Get(0).ToNumber());
}

/// None of a container's, which is another one than this host's of that name.
SString UnitOf(int64_t id) {
    SStringList cgroups = Lines(ProcText(id, "cgroup"));
    cgroups.Chop();
    return ContainerIn(cgroups).IsEmpty() ? UnitIn(cgroups) : SString();
}

/// By their units, as far as systemd tells.
std::map<SString, SString> MainProcesses(const Processes& processes) {
    std::map<SString, SString> main;
    const auto end = Clock::now() + kForAll;
    for (const change::Process& process : processes) {
        if (process.unit.IsEmpty() || main.contains(process.unit) || Clock::now() >= end) continue;
        main[process.unit] = MainProcess(process.unit);
    }
    return main;
}

/// What was started by hand from within another service, as cron's, is not that service: its main process is
/// none of those that are signalled. A unit without a main process, as that of a script of /etc/init.d, or
/// with one that is not known in time, is kept: it is where the server ran, and a server that nobody names
/// would stay stopped.
void ForgetOtherUnits(Processes* processes) {
    const auto main = MainProcesses(*processes);
    const auto is_signalled = [&](const SString& id) {
        return std::ranges::any_of(*processes,
                                   [&](const change::Process& process) { return SString(process.id) == id; });
    };
    for (change::Process& process : *processes) {
        const auto found = main.find(process.unit);
        if (found == main.end() || found->second.ToNumber() == 0) continue;
        if (!is_signalled(found->second)) process.unit = "";
    }
}

SString Word(int signal) {
    return signal == SIGHUP ? "HUP" : signal == SIGTERM ? "TERM" : SString(signal);
}

Witness RecordingOf(int signal) {
    if (!IsRecording()) return {};
    return [signal](const SStringList& entries) { RecordSignal(entries, signal); };
}

}  // namespace

void RecordSignal(const SStringList& entries, int signal) {
    if (!IsRecording()) return;
    const AsRoot root;
    change::ProcessesSignalled signalled{Word(signal), {}};
    for (const SString& entry : entries) {
        if (const auto id = SignalledProcess(entry))
            signalled.processes.push_back({*id, ProcessName(entry), UserOf(*id), {}, UnitOf(*id)});
    }
    if (signalled.processes.empty()) return;
    ReadCommandLines(&signalled.processes);
    ForgetOtherUnits(&signalled.processes);
    RecordChange(signalled);
}

bool KillRecorded(const SString& name, int signal) {
    return KillProgram(name, signal, RecordingOf(signal));
}

bool KillRecordedOf(const SStringList& users, const SString& name, int signal) {
    return KillProgramOf(users, name, signal, RecordingOf(signal));
}
