// Telling UTF-8 (RFC 3629) from other bytes.
#pragma once

#include <cstddef>
#include <string_view>

/// The length of the sequence that begins there; 0 if none does.
size_t Utf8Length(std::string_view text, size_t at);
/// The character's number, of a sequence that is one.
char32_t Utf8Character(std::string_view sequence);
