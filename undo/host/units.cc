#include "undo/host/units.h"

#include "install/reminders.h"
#include "support/process/command.h"
#include "support/system/identity.h"
#include "support/text/sstring_list.h"

namespace {

SString FirstLine(const SString& command) {
    const AsRoot root;
    return ReadCommand(command).Get(0).ChopLineEnd();
}

SString Systemctl(const SString& verb, const SString& unit) {
    return "systemctl " + verb + " " + ShellWord(unit);
}

/// systemd keeps it active for good, and so would not start it.
bool HasExited(const SString& unit) {
    return UnitProperty(unit, "SubState") == "exited";
}

}  // namespace

bool IsUnitActive(const SString& unit) {
    return IsUnitName(unit) && FirstLine(Systemctl("is-active", unit)) == "active" && !HasExited(unit);
}

bool StartUnit(const SString& unit) {
    if (!IsUnitName(unit)) return false;
    FirstLine(StartCommand(unit));
    return IsUnitActive(unit);
}

SString StartCommand(const SString& unit) {
    return Systemctl(HasExited(unit) ? "restart" : "start", unit);
}
