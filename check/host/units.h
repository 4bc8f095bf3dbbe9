// What systemd starts, asked through its command; without it, units are not spoken of.
#pragma once

#include "support/text/sstring_list.h"

bool HasSystemd();
/// The command that stops the unit and keeps it from coming back. Of an instance it names what starts it: for
/// Debian's postfix@-.service that is postfix.service.
SString ToDisable(const SString& unit);
/// The socket unit that listens on the port; empty if none does.
SString SocketUnitOn(const SString& port);
/// From lines of "systemctl list-sockets": "[::]:25 smtp.socket smtp.service".
SString SocketUnitIn(SStringList lines, const SString& port);
