#include "undo/host/units.h"

#include "install/reminders.h"
#include "support/process/command.h"
#include "support/system/identity.h"
#include "support/text/sstring_list.h"

namespace {

constexpr std::chrono::seconds kPatience{20};
constexpr char kTimedOut[] = "137";

/// A start may never end; systemd goes on with it when systemctl is gone. Not ResultWithin, which a signal
/// ends at once: here it waits for the change at hand.
SString FirstLine(const SString& command) {
    const AsRoot root;
    return ReadCommand(WithTimeLimit(command, kPatience)).Get(0).ChopLineEnd();
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

UnitStart StartUnit(const SString& unit) {
    if (!IsUnitName(unit)) return UnitStart::Failed;
    const bool is_ended = FirstLine(StartCommand(unit) + " >/dev/null; echo $?") != kTimedOut;
    if (IsUnitActive(unit)) return UnitStart::Active;
    return is_ended ? UnitStart::Failed : UnitStart::Unfinished;
}

SString StartCommand(const SString& unit) {
    return Systemctl(HasExited(unit) ? "restart" : "start", unit);
}
