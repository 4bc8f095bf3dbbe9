// listener NAME ADDRESS PORT [ADDRESS PORT]...
//
// A server for scenarios: a process of this name that listens on these TCP ports (IPv4 or IPv6 addresses). On
// SIGHUP it closes them, as a super-server does whose services were removed, and adds a line to
// /run/NAME.signals. SIGTERM ends it after $LINGER seconds.
#include <fcntl.h>
#include <netdb.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <vector>

#include "support/system/descriptor.h"
#include "support/system/environment.h"

namespace {

constexpr int kMisused = 64;

Descriptor Listen(const char* address, const char* port) {
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(address, port, &hints, &found) != 0) return Descriptor();
    Descriptor socket_here(socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const bool listens = bind(socket_here.Get(), found->ai_addr, found->ai_addrlen) == 0 &&
                         listen(socket_here.Get(), SOMAXCONN) == 0;
    freeaddrinfo(found);
    return listens ? std::move(socket_here) : Descriptor();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4 || argc % 2 != 0) return kMisused;
    sigset_t awaited;
    sigemptyset(&awaited);
    sigaddset(&awaited, SIGHUP);
    sigaddset(&awaited, SIGTERM);
    sigprocmask(SIG_BLOCK, &awaited, nullptr);
    std::vector<Descriptor> sockets;
    for (int i = 2; i < argc; i += 2) sockets.push_back(Listen(argv[i], argv[i + 1]));
    for (const Descriptor& listening : sockets) {
        if (!listening) return 1;
    }
    // Renamed only now: a scenario that waits for the name also waits for the ports.
    prctl(PR_SET_NAME, argv[1]);
    const SString notes = "/run/" + SString(argv[1]) + ".signals";
    for (int signal = 0; sigwait(&awaited, &signal) == 0 && signal == SIGHUP;) {
        sockets.clear();
        if (!Descriptor::Open(notes, O_WRONLY | O_CREAT | O_APPEND, 0644).WriteAll("SIGHUP\n")) return 1;
    }
    sleep(static_cast<unsigned>(GetEnv("LINGER").ToNumber()));
    return 0;
}
