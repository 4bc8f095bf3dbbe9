#include "install/record/checksum.h"

#include <sha2.h>

#include <array>

SString Checksum(const SString& bytes) {
    std::array<char, SHA256_DIGEST_STRING_LENGTH> digits{};
    SHA256Data(reinterpret_cast<const uint8_t*>(bytes.CString()), bytes.Length(), digits.data());
    return SString(digits.data());
}

SString KeyedChecksum(const SString& key, const SString& bytes) {
    return Checksum(key + bytes);
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
