#include "support/text/utf8.h"

namespace {

unsigned Byte(std::string_view text, size_t at) {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

bool IsContinuation(unsigned byte) {
    return (byte & 0xC0U) == 0x80;
}

/// The length of a UTF-8 sequence that begins with this byte; 0 if none does.
size_t PromisedLength(unsigned first) {
    if (first < 0x80) return 1;
    if (first >= 0xC2 && first <= 0xDF) return 2;
    if (first >= 0xE0 && first <= 0xEF) return 3;
    if (first >= 0xF0 && first <= 0xF4) return 4;
    return 0;
}

/// False for an overlong form, a surrogate or a number past U+10FFFF (RFC 3629).
bool IsSecondAllowed(unsigned first, unsigned second) {
    if (first == 0xE0) return second >= 0xA0;
    if (first == 0xED) return second <= 0x9F;
    if (first == 0xF0) return second >= 0x90;
    if (first == 0xF4) return second <= 0x8F;
    return true;
}

}  // namespace

size_t Utf8Length(std::string_view text, size_t at) {
    const size_t length = PromisedLength(Byte(text, at));
    for (size_t i = 1; i < length; i++) {
        if (!IsContinuation(Byte(text, at + i))) return 0;
    }
    if (length > 1 && !IsSecondAllowed(Byte(text, at), Byte(text, at + 1))) return 0;
    return length;
}

char32_t Utf8Character(std::string_view sequence) {
    constexpr unsigned kFirstBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    char32_t character = Byte(sequence, 0) & kFirstBits[sequence.size()];
    for (size_t i = 1; i < sequence.size(); i++) character = character << 6U | (Byte(sequence, i) & 0x3FU);
    return character;
}
