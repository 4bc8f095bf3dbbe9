#include "undo/host/stopped_servers.h"

#include <algorithm>

#include "install/record/escapes.h"
#include "undo/host/units.h"

namespace {

void PushOnce(const SString& item, SStringList* list) {
    if (!list->Contains(item)) list->Push(item);
}

/// In quotes, which it cannot end, and with nothing hidden: it may look like Undo's own advice.
SString Quoted(const SStringList& command) {
    return '"' + Escaped(command.Join(" ")).S("\"", "\\\"", "g") + '"';
}

SString CommandLine(const change::Process& process) {
    const SString text = process.name + " is to be started again by hand";
    return process.command.IsEmpty() ? text : text + "; it called itself " + Quoted(process.command);
}

bool IsSignalled(int64_t id, const change::ProcessesSignalled& change) {
    return std::ranges::any_of(change.processes,
                               [id](const change::Process& process) { return process.id == id; });
}

bool HasCommandOf(const SString& name, const Runner& runner, const change::ProcessesSignalled& change) {
    return std::ranges::any_of(change.processes, [&](const change::Process& process) {
        return process.name == name && (process.command.IsEmpty() || process.command == runner.command);
    });
}

bool IsRunning(const change::Process& process, const change::ProcessesSignalled& change,
               const std::vector<Runner>& running) {
    return std::ranges::any_of(running, [&](const Runner& runner) {
        const bool has_name =
            runner.name == process.name && (runner.user == 0 || runner.user == process.user);
        const bool is_other = !IsSignalled(runner.id, change) && HasCommandOf(process.name, runner, change);
        return has_name && (runner.id == process.id || is_other);
    });
}

}  // namespace

StoppedServers StoppedServersOf(const change::ProcessesSignalled& change, const std::vector<Runner>& running,
                                bool (*is_active)(const SString& unit)) {
    StoppedServers stopped;
    if (change.signal != "TERM") return stopped;
    for (const change::Process& process : change.processes) {
        if (IsUnitName(process.unit)) {
            if (!is_active(process.unit)) PushOnce(process.unit, &stopped.units);
        } else if (!IsRunning(process, change, running)) {
            PushOnce(CommandLine(process), &stopped.by_hand);
        }
    }
    return stopped;
}
