#include "support/system/host.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <sys/utsname.h>

#include <algorithm>
#include <array>

namespace {

constexpr size_t kLongestDomain = 253;

bool IsLabel(const SString& text) {
    return text.Matches("\\A[A-Za-z0-9](?:[A-Za-z0-9-]{0,61}[A-Za-z0-9])?\\z");
}

}  // namespace

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
