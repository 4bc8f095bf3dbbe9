#include "install/record/checksum.h"

#include <sha2.h>

#include <array>
#include <functional>

SString Checksum(const SString& bytes) {
    return KeyedChecksum("", bytes);
}

SString KeyedChecksum(const SString& key, const SString& bytes) {
    SHA2_CTX context;
    SHA256Init(&context);
    for (const SString& part : {std::cref(key), std::cref(bytes)}) {
        SHA256Update(&context, reinterpret_cast<const uint8_t*>(part.CString()), part.Length());
    }
    std::array<char, SHA256_DIGEST_STRING_LENGTH> digits{};
    return SString(SHA256End(&context, digits.data()));
}

SString Hexadecimal(const SString& bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string digits;
    for (const char c : bytes.Bytes()) {
        const auto byte = static_cast<unsigned char>(c);
        digits += kDigits[byte / 16];
        digits += kDigits[byte % 16];
    }
    return SString(std::move(digits));
}
