#include "undo/host/units.h"

#include "install/reminders.h"
#include "support/process/command.h"
#include "support/system/identity.h"
#include "support/text/sstring_list.h"

namespace {

/// A unit's name comes from a control group, which a container may have named as it likes.
bool IsName(const SString& unit) {
    return unit.Matches("\\A[A-Za-z0-9@:_][A-Za-z0-9@:_.\\\\-]*\\z");
}

SString FirstLine(const SString& command) {
    const AsRoot root;
    return ReadCommand(command).Get(0).ChopLineEnd();
}

SString Systemctl(const SString& verb, const SString& unit) {
    return "systemctl " + verb + " " + ShellWord(unit);
}

}  // namespace

bool IsUnitActive(const SString& unit) {
    return IsName(unit) && FirstLine(Systemctl("is-active", unit)) == "active";
}

bool StartUnit(const SString& unit) {
    if (!IsName(unit)) return false;
    FirstLine(StartCommand(unit));
    return IsUnitActive(unit);
}

SString MainProcess(const SString& unit) {
    return IsName(unit) ? FirstLine(Systemctl("show --property=MainPID --value", unit)) : "";
}

SString StartCommand(const SString& unit) {
    return Systemctl("start", unit);
}
