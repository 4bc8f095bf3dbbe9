#include "support/process/listeners.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "support/system/descriptor.h"

namespace {

TEST(SocketsOn, AreThoseThatListen) {
    const SStringList lines = {
        "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  timeout inode",
        "   0: 00000000:0019 00000000:0000 0A 00000000:00000000 00:00000000 00000000     0        0 30112 1 "
        "0000000000000000 100 0 0 10 0",
        "   1: 0100007F:0019 0100007F:A2C4 01 00000000:00000000 02:000A7D8B 00000000   101        0 30555 2 "
        "0000000000000000 20 4 30 10 -1",
        "   2: 0100007F:006E 00000000:0000 0A 00000000:00000000 00:00000000 00000000     0        0 41220 1 "
        "0000000000000000 100 0 0 10 0",
        "  10: 00000000000000000000000000000000:0019 00000000000000000000000000000000:0000 0A "
        "00000000:00000000 00:00000000 00000000     0        0 30113 1 0000000000000000 100 0 0 10 0",
    };
    EXPECT_EQ(SocketsOn("25", lines), SStringList({"30112", "30113"}));
    EXPECT_EQ(SocketsOn("110", lines), SStringList("41220"));
    EXPECT_EQ(SocketsOn("79", lines), SStringList());
}

TEST(UnitIn, IsTheServiceOfTheProcess) {
    const struct {
        SStringList cgroups;
        SString unit;
    } cases[] = {
        {"0::/system.slice/exim4.service", "exim4.service"},
        {"0::/system.slice/system-postfix.slice/postfix@-.service", "postfix@-.service"},
        {{"12:pids:/system.slice/other.service", "1:name=systemd:/system.slice/cron.service"},
         "cron.service"},
        {"0::/system.slice/dovecot.service/worker", "dovecot.service"},
        {"0::/system.slice/dovecot.service/evil.service", "dovecot.service"},
        {"0::/system.slice/dovecot.service/evil.slice/evil.service", "dovecot.service"},
        {"0::/system.slice/dovecot.service/user.slice/worker", "dovecot.service"},
        {{"0::/", "1:name=systemd:/system.slice/dovecot.service/evil.service"}, "dovecot.service"},
        {"0::/system.slice/run-4711.scope/evil.service", ""},
        {"0::/lxc.payload.mail/system.slice/exim4.service", ""},
        {"0::/cron.service", "cron.service"},
        {"0::/init.scope", ""},
        {"0::/system.slice", ""},
        {"0::/user.slice/user-1000.slice/session-3.scope", ""},
        {"0::/user.slice/user-1000.slice/user@1000.service/app.slice/vte-spawn-1.scope", ""},
        {"0::/", ""},
        {SStringList(), ""},
    };
    for (const auto& c : cases) EXPECT_EQ(UnitIn(c.cgroups), c.unit) << c.cgroups.Get(0);
}

TEST(ContainerIn, IsTheContainerOfTheProcess) {
    const struct {
        SStringList cgroups;
        SString container;
    } cases[] = {
        {"0::/docker/4f5e6a7b", "4f5e6a7b"},
        {"0::/system.slice/docker-4f5e6a7b.scope", "4f5e6a7b"},
        {"0::/machine.slice/libpod-4f5e6a7b.scope/container", "4f5e6a7b"},
        {"0::/lxc.payload.mail/system.slice/exim4.service", "mail"},
        {{"5:cpu:/", "1:name=systemd:/docker/4f5e6a7b"}, "4f5e6a7b"},
        {"0::/machine.slice/machine-web.scope/payload/system.slice/postfix@-.service", "web"},
        {"0::/machine.slice/systemd-nspawn@web.service/payload/system.slice/postfix.service", "web"},
        {"0::/machine.slice/machine-web\\x2d1.scope/payload/system.slice/postfix.service", "web\\x2d1"},
        {"0::/system.slice/docker-registry.service", ""},
        {"0::/kubepods/besteffort/pod12-34/4f5e6a7b", "4f5e6a7b"},
        {"0::/kubepods.slice/kubepods-pod12.slice/cri-containerd-4f5e6a7b.scope", "4f5e6a7b"},
        {"0::/machine.slice/libpod-conmon-4f5e6a7b.scope", ""},
        {"0::/machine.slice/systemd-nspawn@web.service/supervisor", ""},
        {"0::/system.slice/docker.service", ""},
        {"0::/", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(ContainerIn(c.cgroups), c.container) << c.cgroups.Get(0);
}

/// A socket that listens on a free port of this host.
struct Listening {
    Listening() : socket(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        bind(socket.Get(), reinterpret_cast<sockaddr*>(&address), size);
        listen(socket.Get(), 1);
        getsockname(socket.Get(), reinterpret_cast<sockaddr*>(&address), &size);
        port = SString(ntohs(address.sin_port));
    }
    Descriptor socket;
    SString port;
};

TEST(ListenersOn, AreTheProcessesThatHoldThePort) {
    Listening listening;
    const pid_t child = fork();
    if (child == 0) {
        while (true) pause();
    }
    EXPECT_TRUE(IsListenedOn(listening.port));
    const auto listeners = ListenersOn(listening.port);
    ASSERT_EQ(listeners.size(), 1U);  // not the child, which has inherited it
    EXPECT_EQ(listeners[0].id, getpid());
    EXPECT_EQ(listeners[0].name, "support_test");
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    listening.socket.Close();
    EXPECT_FALSE(IsListenedOn(listening.port));
    EXPECT_TRUE(ListenersOn(listening.port).empty());
}

}  // namespace
