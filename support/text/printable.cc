// Decodes UTF-8 and replaces control characters.
#include "support/text/printable.h"

#include "support/text/utf8.h"

namespace {

/// The controls of ASCII and ISO 8859, Unicode's line and paragraph separators, and its embeddings, overrides
/// and isolates, with which a text can look like another. Marks of direction stay: names need them.
bool IsControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) ||
           (character >= 0x2028 && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

/// Length 0: not valid UTF-8, which a terminal may read as ISO 8859.
bool IsControl(std::string_view text, size_t at, size_t length) {
    return IsControl(length == 0 ? static_cast<unsigned char>(text[at])
                                 : Utf8Character(text.substr(at, length)));
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
