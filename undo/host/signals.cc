// Servers that were stopped: systemd's units are started where that is asked for, the others are named. What
// was told to read its configuration again is told once more with that configuration's own way back.
#include <algorithm>
#include <map>

#include "install/reminders.h"
#include "support/process/proc.h"
#include "support/process/process.h"
#include "support/system/identity.h"
#include "undo/host/stopped_servers.h"
#include "undo/host/units.h"
#include "undo/ways.h"

namespace {

bool HasNameOf(const change::ProcessesSignalled& change, const SString& name) {
    return std::ranges::any_of(change.processes,
                               [&](const change::Process& process) { return process.name == name; });
}

/// Those of the same names. What has ended between the two looks is nobody's.
std::vector<Runner> RunningLike(const change::ProcessesSignalled& change) {
    const AsRoot root;
    std::vector<Runner> running;
    const SStringList processes = ReadProcessInfo();
    std::map<long, uid_t> users;
    for (const SString& entry : ReadProcessUsers())
        users[entry.ToNumber()] = static_cast<uid_t>(entry.S("^\\d+ ", "").ToNumber());
    for (const SString& entry : processes) {
        const auto user = users.find(entry.ToNumber());
        const bool is_like = user != users.end() && HasNameOf(change, ProcessName(entry));
        if (is_like) running.push_back({entry.ToNumber(), ProcessName(entry), user->second});
    }
    ReadCommandLines(&running);
    return running;
}

StoppedServers StoppedNow(const change::ProcessesSignalled& change) {
    return StoppedServersOf(change, RunningLike(change), IsUnitActive);
}

SStringList Commands(const SStringList& units) {
    SStringList commands;
    for (const SString& unit : units) commands.Push(unit + " was stopped: " + StartCommand(unit));
    return commands;
}

/// Starts it, and tells where it is not active afterwards.
SStringList LeftOf(const SString& unit) {
    switch (StartUnit(unit)) {
        case UnitStart::Active:
            return {};
        case UnitStart::Failed:
            return unit + " could not be started: " + StartCommand(unit);
        case UnitStart::Unfinished:
            break;
    }
    return unit + " has not started within 20 seconds: systemctl status " + ShellWord(unit);
}

}  // namespace

Finding LookAt(const change::ProcessesSignalled& change, const UndoneRun& run) {
    const StoppedServers stopped = StoppedNow(change);
    if (run.options.units && !stopped.units.IsEmpty()) {
        return {Standing::AsLeft, "Start " + stopped.units.Join(", "), stopped.by_hand};
    }
    SStringList by_hand = Commands(stopped.units);
    by_hand.Push(stopped.by_hand);
    return by_hand.IsEmpty() ? Finding() : Finding{Standing::ByHand, "", by_hand};
}

TakenBack TakeBack(const change::ProcessesSignalled& change, const UndoneRun& /*run*/) {
    const StoppedServers stopped = StoppedNow(change);
    TakenBack taken;
    for (const SString& unit : stopped.units) taken.left.Push(LeftOf(unit));
    taken.is_whole = taken.left.IsEmpty();
    taken.left.Push(stopped.by_hand);
    return taken;
}
