// The settings of remote administration, as the module databases hold them and as the screen shows them.
#pragma once

#include <optional>

#include "support/database/sdbfile.h"

struct RemoteSettings {
    int port = 0;          // "Socket" of "WWW-Server": the web administration's TCP port
    SStringList access;    // "WWWAccess" of "WWW-Server": domains and networks; empty means everywhere
    bool by_email = true;  // "EmailConfig" of "Dispatch": anything but "no"
};

/// From the open tables "/Config" of the two databases; nothing if one of them cannot be read.
std::optional<RemoteSettings> ReadRemoteSettings(const Sdbfile& www_server, const Sdbfile& dispatch);
/// The number that the text begins with: "080" is 80, "443x" is 443, "" is 0. A number too large for an int
/// is still no port.
int PortNumber(const SString& text);
bool IsPort(int number);
/// The access list as shown: "nowhere" where it holds "none", "everywhere" where it is empty.
SStringList ShownAccess(const SStringList& access);
/// The three settings, each with an empty line after it and its value in column 51.
SString SettingsTable(const RemoteSettings& settings);
