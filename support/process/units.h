// systemd's units, as systemctl tells of them where it runs; without it every unit is unknown.
#pragma once

#include "support/text/sstring.h"

/// A name of a control group need not be one: a container may have chosen it.
bool IsUnitName(const SString& name);
/// The unit's property; empty where there is no such unit, or no answer within two seconds.
SString UnitProperty(const SString& unit, const SString& property);
/// The process that the unit's service is; "0" or empty where there is none.
SString MainProcess(const SString& unit);
