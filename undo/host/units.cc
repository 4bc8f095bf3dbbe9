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

}  // namespace

bool IsUnitName(const SString& name) {
    return name.Matches("\\A[A-Za-z0-9@:_][A-Za-z0-9@:_.\\\\-]*\\z");
}

bool IsUnitActive(const SString& unit) {
    return IsUnitName(unit) && FirstLine(Systemctl("is-active", unit)) == "active";
}

bool StartUnit(const SString& unit) {
    if (!IsUnitName(unit)) return false;
    FirstLine(StartCommand(unit));
    return IsUnitActive(unit);
}

SString MainProcess(const SString& unit) {
    return IsUnitName(unit) ? FirstLine(Systemctl("show --property=MainPID --value", unit)) : "";
}

SString StartCommand(const SString& unit) {
    return Systemctl("start", unit);
}
