#include "install/record/escapes.h"

#include <algorithm>
#include <charconv>

#include "support/text/utf8.h"

namespace {

constexpr size_t kEscape = 4;  // "\x" and two digits

/// Controls, and what Unicode has to break lines, to turn the direction of writing, and to be invisible.
bool IsHidden(char32_t character) {
    constexpr struct {
        char32_t first;
        char32_t last;
    } kHidden[] = {{0x00, 0x1F},     {0x7F, 0x9F},      {0xAD, 0xAD},     {0x61C, 0x61C},
                   {0x200B, 0x200F}, {0x2028, 0x202E},  {0x2060, 0x206F}, {0xFEFF, 0xFEFF},
                   {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};
    return std::ranges::any_of(
        kHidden, [=](const auto& range) { return character >= range.first && character <= range.last; });
}

void AppendEscape(unsigned char byte, std::string* text) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    *text += "\\x";
    *text += kDigits[byte / 16];
    *text += kDigits[byte % 16];
}

bool ReadEscape(std::string_view escape, std::string* bytes) {
    unsigned char byte = 0;
    if (escape.size() != kEscape || escape[1] != 'x') return false;
    const char* end = escape.data() + kEscape;
    if (std::from_chars(escape.data() + 2, end, byte, 16).ptr != end) return false;
    *bytes += static_cast<char>(byte);
    return true;
}

}  // namespace

bool IsPlain(const SString& text) {
    return std::ranges::all_of(text.Bytes(),
                               [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; });
}

SString Escaped(const SString& bytes) {
    const std::string_view view = bytes.Bytes();
    std::string text;
    for (size_t at = 0; at < view.size();) {
        const size_t length = Utf8Length(view, at);
        const std::string_view unit = view.substr(at, std::max<size_t>(length, 1));
        const bool is_shown = length > 0 && !IsHidden(Utf8Character(unit));
        if (!is_shown) {
            for (const char byte : unit) AppendEscape(static_cast<unsigned char>(byte), &text);
        } else {
            text += unit == "\\" ? "\\\\" : unit;
        }
        at += unit.size();
    }
    return SString(std::move(text));
}

std::optional<SString> Unescaped(const SString& text) {
    const std::string_view view = text.Bytes();
    std::string bytes;
    for (size_t at = 0; at < view.size();) {
        const bool is_pair = view.substr(at, 2) == "\\\\";
        const bool is_escape = !is_pair && view[at] == '\\';
        if (is_escape && !ReadEscape(view.substr(at, kEscape), &bytes)) return std::nullopt;
        if (!is_escape) bytes += view[at];
        at += is_escape ? kEscape : is_pair ? 2 : 1;
    }
    return SString(std::move(bytes));
}
