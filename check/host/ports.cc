// Who holds the mail system's ports, and what keeps them from coming back.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>

#include "answer/keys.h"
#include "check/host/commands.h"
#include "check/host/inetd_services.h"
#include "check/host/packages.h"
#include "check/host/units.h"
#include "check/looks.h"
#include "install/host/probes.h"
#include "install/settings.h"
#include "support/process/listeners.h"
#include "support/process/process.h"
#include "support/system/identity.h"
#include "support/text/printable.h"

namespace {

/// "Which processes?" takes several, and the last word of a name.
bool CanBeTyped(const SString& name) {
    return !name.Matches("[\\s,]") && Printable(name) == name;
}

/// As it must be typed there, an expression.
SString NameToType(const SString& name) {
    return name.S("([][+*?(){}|^$\\\\])", "\\$1", "g");
}

/// An Internet daemon, which goes on with its other services. Only the first of them is Install's.
bool IsInternetDaemon(const SString& name) {
    return name == "inetd" || name == "inetutils-inetd" || name == "xinetd";
}

SString ProgramOf(const Listener& listener) {
    const AsRoot root;
    std::array<char, PATH_MAX> path{};
    const SString link = "/proc/" + SString(listener.id) + "/exe";
    const ssize_t length = readlink(link.CString(), path.data(), path.size());
    return length > 0 ? SString(std::string(path.data(), static_cast<size_t>(length))) : SString();
}

bool IsMailSystem(const Listener& listener) {
    const SStringList processes = MailSystemProcesses();
    return std::ranges::any_of(processes,
                               [&](const SString& entry) { return entry.ToNumber() == listener.id; });
}

/// The answer would end them all.
SString Namesakes(const SString& name) {
    const size_t count = CanBeTyped(name) ? ProcessesNamed(RunningProcesses(), name).Count() : 0;
    return count < 2 ? SString() : "; " + SString(count) + " processes have this name";
}

SString Described(const Listener& listener) {
    SString text = listener.name + ", process " + SString(listener.id);
    const SString container = ContainerIn(listener.cgroups);
    if (!container.IsEmpty()) return text + ", in the container " + container;
    const SString package = PackageOf(ProgramOf(listener));
    const SString unit = UnitIn(listener.cgroups);
    if (!package.IsEmpty()) text += ", of the package " + package;
    if (!unit.IsEmpty()) text += ", of the unit " + unit;
    return text + Namesakes(listener.name);
}

/// The container's runtime would start it again, and its processes' names are everybody's.
SStringList ToStopContainer(const SString& container) {
    return "stop the container " + container +
           " and keep it from starting again (docker update --restart=no, docker stop, or what started it)";
}

/// docker-proxy only forwards to a container.
SStringList ToStopForwarded(const SString& port) {
    const SStringList names = LinesOf("docker ps --filter publish=" + port + " --format '{{.Names}}'");
    if (names.IsEmpty()) return "stop the container that publishes port " + port;
    return "docker update --restart=no " + names[0] + " && docker stop " + names[0];
}

SStringList ToFreeFromSystemd(const SString& port) {
    const SString unit = SocketUnitOn(port);
    if (unit.IsEmpty())
        return "systemctl list-sockets shows the unit; then: systemctl disable --now UNIT.socket";
    return ToDisable(unit);
}

/// What Install does not: a service by another name, one that is gone from its file, another daemon.
SStringList ToFreeFrom(const SString& daemon, const SString& port) {
    const SString file = daemon == "xinetd" ? "/etc/xinetd.d" : gstr_InetdConf;
    return {"take the service on port " + port + " out of " + file, "pkill -HUP -x " + daemon};
}

bool IsTakenFromInetd(const SString& service, const Listener& listener) {
    return listener.name == "inetd" && HoldsOneOf(ServicesToTakeFromInetd(), service);
}

/// What Install leaves to the administrator.
SStringList ToFree(const SString& service, const SString& port, const Listener& listener) {
    const SString unit = UnitIn(listener.cgroups);
    const SString container = ContainerIn(listener.cgroups);
    if (listener.name == "systemd") return ToFreeFromSystemd(port);
    if (listener.name == "docker-proxy") return ToStopForwarded(port);
    if (!container.IsEmpty()) return ToStopContainer(container);
    if (IsTakenFromInetd(service, listener)) return {};
    if (IsInternetDaemon(listener.name)) return ToFreeFrom(listener.name, port);
    if (!unit.IsEmpty() && HasSystemd()) return ToDisable(unit);
    return CanBeTyped(listener.name) ? SStringList() : "kill " + SString(listener.id);
}

/// By which question Install frees the port.
SStringList ToAnswer(const SString& service, const Listener& listener) {
    using enum QuestionId;
    if (listener.name == "systemd" || listener.name == "docker-proxy") return {};
    if (!ContainerIn(listener.cgroups).IsEmpty()) return {};
    if (IsTakenFromInetd(service, listener)) return LineFor(QuestionOf(EditInetd), "yes");
    if (IsInternetDaemon(listener.name) || !CanBeTyped(listener.name)) return {};
    if (listener.name.EndsWith("sendmail")) return LineFor(QuestionOf(KillSendmail), "yes");
    return LineFor(QuestionOf(WhichProcesses), NameToType(listener.name));
}

void LookAtPort(const SString& service, const SString& port, Findings* findings) {
    const SString name = port + " (" + service + ")";
    std::vector<Listener> listeners;
    {
        const AsRoot root;
        if (!IsListenedOn(port)) return findings->Ok("port", name + " is free");
        listeners = ListenersOn(port);
    }
    if (listeners.empty()) {
        const bool is_root = getuid() == 0;
        findings->Problem("port", name + " is held by a process that " +
                                      (is_root ? "/proc does not show" : "only root may see"));
    }
    for (const Listener& listener : listeners) {
        const SString text = name + " is held by " + Described(listener);
        if (IsMailSystem(listener)) {
            findings->Ok("port", text);
        } else {
            findings->Problem("port", text, ToFree(service, port, listener), ToAnswer(service, listener));
        }
    }
}

}  // namespace

void LookAtPorts(Findings* findings) {
    for (size_t i = 0; i < gstrl_Services.Count(); ++i) {
        LookAtPort(gstrl_Services[i], gstrl_ServicePorts[i], findings);
    }
}
