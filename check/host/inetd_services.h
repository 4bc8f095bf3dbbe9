// What Install takes from the Internet daemon, as its file stands now.
#pragma once

#include "support/text/sstring_list.h"

/// As EditInetdConf will list them; none where the file cannot be read.
SStringList ServicesToTakeFromInetd();
/// Whether the service, "smtp", is among them under any of its names.
bool HoldsOneOf(const SStringList& services, const SString& service);
