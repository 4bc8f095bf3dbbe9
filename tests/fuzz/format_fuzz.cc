// Texts with names and settings from outside, put on the screen: no word is lost or changed, every line ends,
// and no control character gets through. The input's first two bytes are the width and the indent.

#include <cstdint>
#include <cstdlib>

#include "install/console.h"
#include "support/text/printable.h"

namespace {

void Require(bool holds) {
    if (!holds) abort();
}

bool IsPlain(char c) {
    return static_cast<unsigned char>(c) >= 0x20 || c == '\t';
}

void CheckFormat(const SString& text, int width, int indent) {
    const SString paragraph = Format(text, width, indent, "\n");
    Require(paragraph.Split(' ') == text.Split(' '));
    Require(paragraph.IsEmpty() || paragraph.EndsWith("\n"));
    for (const SString& line : paragraph.Split('\n')) {
        // Each line runs past its room only by a word that is longer, or by the blanks between words.
        const size_t words = line.Split(' ').Count();
        Require(words == 1 || line.Length() <= static_cast<size_t>(std::max(width, 0)) + 2 * words);
    }
}

void CheckPrintable(const SString& text) {
    const SString shown = Printable(text);
    Require(Printable(shown) == shown);
    for (const char c : shown.Bytes()) Require(IsPlain(c));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    const SString text(std::string_view(reinterpret_cast<const char*>(data) + 2, size - 2));
    CheckFormat(text, data[0], data[1] % 64);
    CheckPrintable(text);
    return 0;
}
