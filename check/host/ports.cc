// Who holds the mail system's ports, and what keeps them from coming back.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>

#include "check/host/packages.h"
#include "check/host/port_holders.h"
#include "check/looks.h"
#include "install/host/probes.h"
#include "install/settings.h"
#include "support/process/listeners.h"
#include "support/system/identity.h"

namespace {

SString ProgramOf(const Listener& listener) {
    const AsRoot root;
    std::array<char, PATH_MAX> path{};
    const SString link = "/proc/" + SString(listener.id) + "/exe";
    const ssize_t length = readlink(link.CString(), path.data(), path.size());
    return length > 0 ? SString(std::string(path.data(), static_cast<size_t>(length))) : SString();
}

bool IsOneOf(const SStringList& processes, const Listener& listener) {
    return std::ranges::any_of(processes,
                               [&](const SString& entry) { return entry.ToNumber() == listener.id; });
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

struct Port {
    SString name;  // "25 (smtp)"
    bool is_free = true;
    std::vector<Holder> holders;
};

Port LookAtPort(const SString& service, const SString& port, bool is_mail_system_running) {
    const AsRoot root;
    Port found{port + " (" + service + ")", !IsListenedOn(port), {}};
    if (found.is_free) return found;
    for (const Listener& listener : ListenersOn(port)) {
        found.holders.push_back({port, listener, StepThatFrees(service, listener, is_mail_system_running)});
    }
    return found;
}

void Report(const Port& port, const std::vector<Holder>& all, const SStringList& own, Findings* findings) {
    if (port.is_free) return findings->Ok("port", port.name + " is free");
    if (port.holders.empty()) {
        const SString why = getuid() == 0 ? "/proc does not show" : "only root may see";
        return findings->Problem("port", port.name + " is held by a process that " + why);
    }
    for (const Holder& holder : port.holders) {
        const SString text = port.name + " is held by " + Described(holder.listener);
        if (IsOneOf(own, holder.listener)) {
            findings->Ok("port", text);
        } else {
            findings->Problem("port", text, ToFree(holder), ToAnswer(holder, all));
        }
    }
}

}  // namespace

void LookAtPorts(Findings* findings) {
    const SStringList own = MailSystemProcesses();
    std::vector<Port> ports;
    std::vector<Holder> all;
    for (size_t i = 0; i < gstrl_Services.Count(); ++i) {
        ports.push_back(LookAtPort(gstrl_Services[i], gstrl_ServicePorts[i], !own.IsEmpty()));
        all.insert(all.end(), ports.back().holders.begin(), ports.back().holders.end());
    }
    for (const Port& port : ports) Report(port, all, own, findings);
}
