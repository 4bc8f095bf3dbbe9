#include "support/host.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

constexpr size_t kLongestDomain = 253;

bool IsLabel(const SString& text) {
    return text.Matches("\\A[A-Za-z0-9](?:[A-Za-z0-9-]{0,61}[A-Za-z0-9])?\\z");
}

SString FormatTime(const char* format, const tm& time) {
    std::array<char, 64> text{};
    // The program never leaves the C locale, so the names of days and months are the standard's.
    return SString(std::string(text.data(), strftime(text.data(), text.size(), format, &time)));
}

int64_t Microseconds() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

}  // namespace

SString GetEnv(const char* name) {
    return SString(getenv(name));
}

void PutEnv(const SString& name, const SString& value) {
    setenv(name.CString(), value.CString(), 1);
}

SString NodeName() {
    utsname facts{};
    return uname(&facts) == 0 ? SString(facts.nodename) : SString();
}

SStringList GetHostByName(const SString& name) {
    SStringList addresses;
    // Not getaddrinfo: that would reorder what the resolver gives.
    const hostent* host = gethostbyname(name.CString());
    if (host == nullptr || host->h_addrtype != AF_INET) return addresses;
    for (char** address = host->h_addr_list; *address != nullptr; ++address) {
        std::array<char, INET_ADDRSTRLEN> text{};
        if (inet_ntop(AF_INET, *address, text.data(), text.size()) != nullptr) addresses.Push(text.data());
    }
    return addresses;
}

bool IsValidDomain(const SString& name) {
    if (name.IsEmpty() || name.Length() > kLongestDomain) return false;
    const SStringList labels = name.SplitExact(".");
    // An all-digit last label would be taken for the end of an address.
    return std::ranges::all_of(labels, IsLabel) && !labels[labels.Count() - 1].Matches("\\A[0-9]+\\z");
}

SString RFC822Date() {
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    return FormatTime("%a, %d %b %Y %H:%M:%S %z", local);
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

SString ProcessIdString() {
    return SString(getpid());
}

int RandomInt(int n) {
    return n < 1 ? 0 : static_cast<int>(arc4random_uniform(static_cast<uint32_t>(n)));
}
