#include "support/system/clock.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <ctime>

namespace {

SString FormatTime(const char* format, const tm& time) {
    std::array<char, 64> text{};
    // English names: the program never leaves the C locale.
    return SString(std::string(text.data(), strftime(text.data(), text.size(), format, &time)));
}

int64_t Microseconds() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

}  // namespace

SString RFC822Date() {
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    return FormatTime("%a, %d %b %Y %H:%M:%S %z", local);
}

SString UniversalTime() {
    const time_t now = time(nullptr);
    tm universal{};
    gmtime_r(&now, &universal);
    return FormatTime("%Y-%m-%dT%H:%M:%SZ", universal);
}

SString MessageIdDate() {
    constexpr int64_t kMicrosecondsPerSecond = 1000000;
    static int64_t last = 0;
    last = std::max(last + 1, Microseconds());
    const time_t seconds = last / kMicrosecondsPerSecond;
    tm universal{};
    gmtime_r(&seconds, &universal);
    std::array<char, 8> fraction{};
    snprintf(fraction.data(), fraction.size(), "%06d", static_cast<int>(last % kMicrosecondsPerSecond));
    return FormatTime("%Y%m%d%H%M%S", universal) + SString(fraction.data());
}
