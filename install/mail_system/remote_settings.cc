#include "install/mail_system/remote_settings.h"
#include "support/text/printable.h"

#include <algorithm>
#include <limits>

#include "install/console.h"

namespace {

constexpr int kLargestPort = 65535;
constexpr size_t kLabelWidth = 50;

SString Row(const SString& label, const SString& value) {
    return PaddedTo(label, kLabelWidth) + value + "\n\n";
}

}  // namespace

std::optional<RemoteSettings> ReadRemoteSettings(const Sdbfile& www_server, const Sdbfile& dispatch) {
    SStringList port;
    SStringList access;
    SStringList by_email;
    const bool is_read = www_server.Read("Socket", &port) && www_server.Read("WWWAccess", &access) &&
                         dispatch.Read("EmailConfig", &by_email);
    if (!is_read) return std::nullopt;
    return RemoteSettings{PortNumber(port.Get(0)), access, by_email.Get(0) != "no"};
}

int PortNumber(const SString& text) {
    using Range = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<long>(text.ToNumber(), Range::min(), Range::max()));
}

bool IsPort(int number) {
    return number >= 1 && number <= kLargestPort;
}

SStringList ShownAccess(const SStringList& access) {
    if (access.IsEmpty()) return "everywhere";
    return access.Contains("none") ? "nowhere" : access;
}

SString SettingsTable(const RemoteSettings& settings) {
    SStringList access;
    for (const SString& entry : ShownAccess(settings.access)) access.Push(Printable(entry));
    return Row("    TCP/IP port for World-Wide-Web configuration:", SString(settings.port)) +
           Row("    World-Wide-Web configuration allowed from:",
               access.Join("\r\n" + SString(' ', kLabelWidth))) +
           Row("    Allow configuration via E-mail:", settings.by_email ? "yes" : "no");
}
