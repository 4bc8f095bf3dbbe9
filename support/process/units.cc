#include "support/process/units.h"

#include "support/process/bounded.h"
#include "support/process/command.h"

namespace {

constexpr std::chrono::seconds kPatience{2};

}  // namespace

bool IsUnitName(const SString& name) {
    return name.Matches("\\A[A-Za-z0-9@:_][A-Za-z0-9@:_.\\\\-]*\\z");
}

SString UnitProperty(const SString& unit, const SString& property) {
    if (!IsUnitName(unit)) return "";
    const SString command = "systemctl show --property=" + property + " --value '" + unit + "'";
    const auto lines = ResultWithin(kPatience, [&] { return ReadCommand(command); });
    return lines ? lines->Get(0).ChopLineEnd() : SString();
}

SString MainProcess(const SString& unit) {
    return UnitProperty(unit, "MainPID");
}
