#include "undo/octal.h"

#include <array>
#include <cstdio>

SString Octal(mode_t bits) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%o", static_cast<unsigned>(bits));
    return text.data();
}
