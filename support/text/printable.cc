// Decodes UTF-8 and replaces control characters.
#include "support/text/printable.h"

#include "support/text/utf8.h"

namespace {

unsigned Byte(std::string_view text, size_t at) {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
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
        const size_t length = Utf8Length(bytes, at);
        const std::string_view character = bytes.substr(at, length > 0 ? length : 1);
        const bool is_shown = !IsControl(bytes, at, length) || kept.find(character) != std::string_view::npos;
        result += is_shown ? character : "?";
        at += character.size();
    }
    return result;
}
