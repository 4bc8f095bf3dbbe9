// Decodes UTF-8 and replaces control characters.
#include "support/text/printable.h"

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

/// The length of the UTF-8 sequence there; 0 if it is not valid.
size_t SequenceLength(std::string_view text, size_t at) {
    const size_t length = PromisedLength(Byte(text, at));
    for (size_t i = 1; i < length; i++) {
        if (!IsContinuation(Byte(text, at + i))) return 0;
    }
    if (length > 1 && !IsSecondAllowed(Byte(text, at), Byte(text, at + 1))) return 0;
    return length;
}

/// Length 0: not valid UTF-8, which a terminal may read as ISO 8859.
bool IsControl(std::string_view text, size_t at, size_t length) {
    const unsigned first = Byte(text, at);
    if (length == 0) return first < 0xA0;
    return first < 0x20 || first == 0x7F || (first == 0xC2 && Byte(text, at + 1) < 0xA0);
}

}  // namespace

SString Printable(const SString& text, std::string_view kept) {
    const std::string_view bytes = text.Bytes();
    std::string result;
    for (size_t at = 0; at < bytes.size();) {
        const size_t length = SequenceLength(bytes, at);
        const std::string_view character = bytes.substr(at, length > 0 ? length : 1);
        const bool is_shown = !IsControl(bytes, at, length) || kept.find(character) != std::string_view::npos;
        result += is_shown ? character : "?";
        at += character.size();
    }
    return result;
}
