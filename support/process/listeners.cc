// Finds the sockets in /proc/net and their processes by the descriptors of each.
#include "support/process/listeners.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <set>

#include "support/system/descriptor.h"
#include "support/system/file.h"

namespace {

constexpr size_t kMostText = size_t{16} << 20;

SStringList LinesOf(const SString& path) {
    const auto file = Descriptor::Open(path, O_RDONLY);
    const auto text = file ? file.ReadAll(kMostText) : std::nullopt;
    SStringList lines = text ? Lines(*text) : SStringList();
    for (SString& line : lines) line.ChopLineEnd();
    return lines;
}

SStringList SocketsOn(const SString& port) {
    SStringList sockets = SocketsOn(port, LinesOf("/proc/net/tcp"));
    sockets.Push(SocketsOn(port, LinesOf("/proc/net/tcp6")));
    return sockets;
}

/// Whether the process has one of the sockets open.
bool HasOneOf(const SStringList& sockets, const SString& process) {
    const SStringList files = ReadDir(process + "/fd");
    return std::ranges::any_of(files, [&](const SString& file) {
        return sockets.Contains(LinkText(file).S("^socket:\\[(\\d+)\\]$", "$1"));
    });
}

pid_t ParentOf(const SString& process) {
    SStringList lines = LinesOf(process + "/status");
    lines = lines.Grep("s/^PPid:\\s*(\\d+)$/$1/");
    return static_cast<pid_t>(lines.Get(0).ToNumber());
}

}  // namespace

SStringList SocketsOn(const SString& port, SStringList lines) {
    std::array<char, 8> wanted{};
    snprintf(wanted.data(), wanted.size(), "%04lX", static_cast<unsigned long>(port.ToNumber()) & 0xFFFF);
    return lines.Grep("s/^\\s*\\d+: [0-9A-F]+:" + SString(wanted.data()) +
                      " \\S+ 0A (?:\\S+\\s+){5}(\\d+)\\s.*/$1/");
}

bool IsListenedOn(const SString& port) {
    return !SocketsOn(port).IsEmpty();
}

std::vector<Listener> ListenersOn(const SString& port) {
    const SStringList sockets = SocketsOn(port);
    SStringList processes;
    std::set<pid_t> ids;
    if (sockets.IsEmpty()) return {};
    for (const SString& process : ReadDir("/proc").Grep("/^\\/proc\\/\\d+$/")) {
        if (!HasOneOf(sockets, process)) continue;
        processes.Push(process);
        ids.insert(static_cast<pid_t>(BaseName(process, "").ToNumber()));
    }
    std::vector<Listener> listeners;
    for (const SString& process : processes) {
        if (ids.contains(ParentOf(process))) continue;
        listeners.push_back({static_cast<pid_t>(BaseName(process, "").ToNumber()),
                             LinesOf(process + "/comm").Get(0), LinesOf(process + "/cgroup")});
    }
    std::ranges::sort(listeners, {}, &Listener::id);
    return listeners;
}

SString UnitIn(SStringList cgroups) {
    cgroups = cgroups.Grep("s/^(?:0:|\\d+:name=systemd):\\/(?!user\\.slice\\/)//");
    return cgroups.Grep("s/^(?:[^\\/]+\\.slice\\/)*([^\\/]+\\.(?:service|socket))(?:\\/.*)?$/$1/").Get(0);
}

SString ContainerIn(SStringList cgroups) {
    return cgroups
        .Grep(
            "s/^.*\\/(?:(?:docker|libpod|crio|cri-containerd)(?:\\/|-(?!conmon)(?=[^\\/]*\\.scope))|lxc(?:\\.payload\\.|\\/)|"
            "machine-(?=.*\\/payload\\b)|systemd-nspawn@(?=.*\\/payload\\b)|kubepods[^\\/]*\\/(?:.*\\/)?)"
            "([\\w.\\\\-]+?)(?:\\.scope|\\.service)?(?:\\/.*)?$/$1/")
        .Get(0);
}
