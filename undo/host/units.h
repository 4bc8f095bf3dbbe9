// Whether systemd's units are active, and starting them (support/process/units.h).
#pragma once

#include "support/process/units.h"

/// Not one whose processes have all ended, though systemd calls it active: "active (exited)", as it does with
/// a script of /etc/init.d.
bool IsUnitActive(const SString& unit);
/// As systemctl is given twenty seconds to tell.
enum class UnitStart { Active, Failed, Unfinished };

UnitStart StartUnit(const SString& unit);
/// A command to be pasted into a shell: "systemctl start", or "restart" for one that systemd calls active.
SString StartCommand(const SString& unit);
