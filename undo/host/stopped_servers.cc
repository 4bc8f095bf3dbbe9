#include "undo/host/stopped_servers.h"

#include "undo/host/units.h"

namespace {

void PushOnce(const SString& item, SStringList* list) {
    if (!list->Contains(item)) list->Push(item);
}

SString CommandLine(const change::Process& process) {
    if (process.command.IsEmpty()) return process.name + " is to be started again by hand";
    return process.name + " is to be started again by hand; it called itself: " + process.command.Join(" ");
}

}  // namespace

StoppedServers StoppedServersOf(const change::ProcessesSignalled& change, const SStringList& running,
                                bool (*is_active)(const SString& unit)) {
    StoppedServers stopped;
    if (change.signal != "TERM") return stopped;
    for (const change::Process& process : change.processes) {
        if (IsUnitName(process.unit)) {
            if (!is_active(process.unit)) PushOnce(process.unit, &stopped.units);
        } else if (!running.Contains(process.name)) {
            PushOnce(CommandLine(process), &stopped.by_hand);
        }
    }
    return stopped;
}
