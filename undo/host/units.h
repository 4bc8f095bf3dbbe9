// systemd's units, where it runs: without it every unit is unknown to it.
#pragma once

#include "support/text/sstring.h"

/// A name of a control group need not be one: a container may have chosen it.
bool IsUnitName(const SString& name);
bool IsUnitActive(const SString& unit);
/// False where it is not active afterwards.
bool StartUnit(const SString& unit);
/// The process that the unit's service is; "0" or empty where there is none.
SString MainProcess(const SString& unit);
/// A command to be pasted into a shell.
SString StartCommand(const SString& unit);
