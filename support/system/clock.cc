#include "support/system/clock.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <ctime>

namespace {

constexpr const char* kRFC822 = "%a, %d %b %Y %H:%M:%S %z";
constexpr const char* kUniversal = "%Y-%m-%dT%H:%M:%SZ";

SString FormatTime(const char* format, const tm& time) {
    std::array<char, 64> text{};
    // English names: the program never leaves the C locale.
    return SString(std::string(text.data(), strftime(text.data(), text.size(), format, &time)));
}

/// strptime takes more than strftime gives: what is not given back to the byte is no such time.
std::optional<int64_t> TimeFrom(const char* format, const SString& text) {
    tm fields{};
    if (strptime(text.CString(), format, &fields) == nullptr) return std::nullopt;
    const long offset = fields.tm_gmtoff;
    const time_t seconds = timegm(&fields);  // mends the weekday, and drops the offset
    fields.tm_gmtoff = offset;
    if (FormatTime(format, fields) != text) return std::nullopt;
    return seconds - offset;
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
    return FormatTime(kRFC822, local);
}

std::optional<int64_t> TimeOfRFC822Date(const SString& date) {
    return TimeFrom(kRFC822, date);
}

std::optional<int64_t> TimeOfUniversal(const SString& time) {
    return TimeFrom(kUniversal, time);
}

SString UniversalTime() {
    const time_t now = time(nullptr);
    tm universal{};
    gmtime_r(&now, &universal);
    return FormatTime(kUniversal, universal);
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
