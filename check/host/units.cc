#include "check/host/units.h"

#include "check/host/commands.h"
#include "install/reminders.h"

namespace {

/// Enabled, disabled, static ...; empty where there is no such unit.
SString StateOf(const SString& unit) {
    return LinesOf("systemctl is-enabled -- " + ShellWord(unit)).Get(0);
}

bool IsUnit(const SString& unit) {
    const SString state = StateOf(unit);
    return !state.IsEmpty() && state != "not-found";
}

}  // namespace

bool HasSystemd() {
    return HasCommand("systemctl");
}

SString ToDisable(const SString& unit) {
    const SString starter = unit.S("@.*\\.service$", ".service");
    return "systemctl disable --now " + ShellWord(starter != unit && IsUnit(starter) ? starter : unit);
}

SString SocketUnitOn(const SString& port) {
    return SocketUnitIn(LinesOf("systemctl list-sockets --no-legend --no-pager --full"), port);
}

SString SocketUnitIn(SStringList lines, const SString& port) {
    return lines.Grep("s/^\\S*:" + port + "\\s+(\\S+\\.socket)\\s.*$/$1/").Get(0);
}
