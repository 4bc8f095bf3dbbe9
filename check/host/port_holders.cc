#include "check/host/port_holders.h"

#include "answer/keys.h"
#include "check/host/commands.h"
#include "check/host/inetd_services.h"
#include "check/host/units.h"
#include "install/host/probes.h"
#include "install/settings.h"
#include "support/process/process.h"
#include "support/text/printable.h"

namespace {

/// "Which processes?" takes several, and the last word of a name.
bool CanBeTyped(const SString& name) {
    return name.Matches("\\w") && !name.Matches("[\\s,]") && Printable(name) == name;
}

/// As it must be typed there, an expression.
SString NameToType(const SString& name) {
    return name.S("([][.+*?(){}|^$\\\\])", "\\$1", "g");
}

/// An Internet daemon, which goes on with its other services. Only the first of them is Install's.
bool IsInternetDaemon(const SString& name) {
    return name == "inetd" || name == "inetutils-inetd" || name == "xinetd";
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

SString NamesToType(const std::vector<Holder>& holders) {
    SStringList typed;
    for (const Holder& holder : holders) {
        const SString name = NameToType(holder.listener.name);
        if (holder.freed_by == FreedBy::KillServers && !typed.Contains(name)) typed.Push(name);
    }
    return typed.Join(" ");
}

}  // namespace

FreedBy StepThatFrees(const SString& service, const Listener& listener, bool is_mail_system_running) {
    const SString& name = listener.name;
    if (name == "systemd" || name == "docker-proxy") return FreedBy::Nothing;
    if (!ContainerIn(listener.cgroups).IsEmpty()) return FreedBy::Nothing;
    if (name == "inetd" && HoldsOneOf(ServicesToTakeFromInetd(), service)) return FreedBy::EditInetd;
    if (IsInternetDaemon(name)) return FreedBy::Nothing;
    if (name.EndsWith("sendmail")) return FreedBy::KillSendmail;
    return CanBeTyped(name) && !is_mail_system_running ? FreedBy::KillServers : FreedBy::Nothing;
}

SString Namesakes(const SString& name) {
    const size_t count = CanBeTyped(name) ? ProcessesNamed(RunningProcesses(), NameToType(name)).Count() : 0;
    return count < 2 ? SString() : "; " + SString(count) + " processes have this name";
}

SStringList ToFree(const Holder& holder) {
    const SString& name = holder.listener.name;
    const SString unit = UnitIn(holder.listener.cgroups);
    const SString container = ContainerIn(holder.listener.cgroups);
    if (name == "systemd") return ToFreeFromSystemd(holder.port);
    if (name == "docker-proxy") return ToStopForwarded(holder.port);
    if (!container.IsEmpty()) return ToStopContainer(container);
    if (holder.freed_by == FreedBy::EditInetd) return {};
    if (IsInternetDaemon(name)) return ToFreeFrom(name, holder.port);
    if (!unit.IsEmpty() && HasSystemd()) return ToDisable(unit);
    return holder.freed_by == FreedBy::Nothing ? "kill " + SString(holder.listener.id) : SStringList();
}

SStringList ToAnswer(const Holder& holder, const std::vector<Holder>& all) {
    switch (holder.freed_by) {
        case FreedBy::Nothing:
            return {};
        case FreedBy::EditInetd:
            return LineFor(QuestionOf(QuestionId::EditInetd), "yes");
        case FreedBy::KillSendmail:
            return LineFor(QuestionOf(QuestionId::KillSendmail), "yes");
        case FreedBy::KillServers:
            break;
    }
    return {LineFor(QuestionOf(QuestionId::ListProcesses), "no"),
            LineFor(QuestionOf(QuestionId::WhichProcesses), NamesToType(all))};
}
