#include "answer/terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace {

bool MakeRaw(const Descriptor& terminal) {
    struct termios settings {};
    if (tcgetattr(terminal.Get(), &settings) != 0) return false;
    cfmakeraw(&settings);
    return tcsetattr(terminal.Get(), TCSANOW, &settings) == 0;
}

}  // namespace

std::optional<Terminal> Terminal::Open() {
    std::array<char, 64> name{};
    Descriptor ours = Descriptor::Open("/dev/ptmx", O_RDWR);
    if (!ours || grantpt(ours.Get()) != 0 || unlockpt(ours.Get()) != 0) return std::nullopt;
    if (ptsname_r(ours.Get(), name.data(), name.size()) != 0) return std::nullopt;
    Descriptor programs = Descriptor::Open(name.data(), O_RDWR);
    if (!programs || !MakeRaw(programs)) return std::nullopt;
    return Terminal(std::move(ours), std::move(programs));
}

bool Terminal::Become() const {
    if (setsid() < 0 || ioctl(programs_.Get(), TIOCSCTTY, 0) != 0) return false;
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (dup2(programs_.Get(), fd) < 0) return false;
    }
    return true;
}

SString Terminal::Read(std::chrono::milliseconds patience) const {
    pollfd wanted{ours_.Get(), POLLIN, 0};
    if (poll(&wanted, 1, static_cast<int>(patience.count())) <= 0) return "";
    std::array<char, 4096> bytes{};
    const ssize_t got = read(ours_.Get(), bytes.data(), bytes.size());
    return got > 0 ? SString(std::string(bytes.data(), static_cast<size_t>(got))) : "";
}
