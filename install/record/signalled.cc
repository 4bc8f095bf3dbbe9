#include "install/record/signalled.h"

#include <fcntl.h>

#include <csignal>

#include "install/record/record.h"
#include "support/process/listeners.h"
#include "support/process/process.h"
#include "support/system/identity.h"

namespace {

constexpr size_t kMostText = 4096;  // its owner chooses the length, and how many there are

SString TextOf(pid_t id, const char* name) {
    const auto file = Descriptor::Open("/proc/" + SString(id) + "/" + name, O_RDONLY);
    return file ? file.ReadAll(kMostText).value_or("") : "";
}

/// Each argument ends with a NUL, unless the process has written something else there.
SStringList CommandOf(pid_t id) {
    SString line = TextOf(id, "cmdline");
    if (line[-1] == '\0') line.Chop();
    return line.SplitExact(SString(std::string_view("\0", 1)));
}

/// None of a container's, which is another one than this host's of that name.
SString UnitOf(pid_t id) {
    const SStringList cgroups = Lines(TextOf(id, "cgroup"));
    return ContainerIn(cgroups).IsEmpty() ? UnitIn(cgroups) : SString();
}

change::Process ProcessOf(pid_t id, const SString& entry) {
    return {id, ProcessName(entry), CommandOf(id), UnitOf(id)};
}

SString Word(int signal) {
    return signal == SIGHUP ? "HUP" : signal == SIGTERM ? "TERM" : SString(signal);
}

Witness RecordingOf(int signal) {
    return [signal](const SStringList& entries) { RecordSignal(entries, signal); };
}

}  // namespace

void RecordSignal(const SStringList& entries, int signal) {
    if (!IsRecording()) return;
    const AsRoot root;
    change::ProcessesSignalled signalled{Word(signal), {}};
    for (const SString& entry : entries) {
        if (const auto id = SignalledProcess(entry)) signalled.processes.push_back(ProcessOf(*id, entry));
    }
    if (!signalled.processes.empty()) RecordChange(signalled);
}

bool KillRecorded(const SString& name, int signal) {
    return KillProgram(name, signal, RecordingOf(signal));
}

bool KillRecordedOf(const SStringList& users, const SString& name, int signal) {
    return KillProgramOf(users, name, signal, RecordingOf(signal));
}
