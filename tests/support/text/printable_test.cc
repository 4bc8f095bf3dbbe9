#include "support/text/printable.h"

#include <gtest/gtest.h>

namespace {

const SString kNul('\0', 1);

TEST(Printable, ShowsNoControlCharacter) {
    const struct {
        SString text, shown;
    } cases[] = {
        {"", ""},
        {"plain text", "plain text"},
        {"a\tb", "a?b"},
        {"dos\r\n", "dos??"},
        {"a\rb\nc", "a?b?c"},
        {"\x1B[2J\x7F\a" + kNul, "?[2J???"},
        {"J\xC3\xBCrgen \xE2\x82\xAC \xF0\x9F\x93\xAC", "J\xC3\xBCrgen \xE2\x82\xAC \xF0\x9F\x93\xAC"},
        {"\xC2\x9B"
         "2J\xC2\x80\xC2\xA0",
         "?2J?\xC2\xA0"},
        {"\x9B"
         "2J",
         "?2J"},
        {"\xE9t\xE9", "\xE9t\xE9"},
        {"\xC0\x9B", "\xC0?"},
        {"\xE0\x82\x9B", "\xE0??"},
        {"\xED\xA0\x80", "\xED\xA0?"},
        {"\xE0\xA0\x80 \xED\x9F\xBF", "\xE0\xA0\x80 \xED\x9F\xBF"},  // the first of three bytes, and U+D7FF
        {"\xF0\x80\x80\x80", "\xF0???"},
        {"\xF0\x8F\x80\x80", "\xF0???"},
        {"\xF0\x90\x80\x80 \xF4\x8F\xBF\xBF", "\xF0\x90\x80\x80 \xF4\x8F\xBF\xBF"},  // U+10000 and U+10FFFF
        {"\xF4\x90\x80\x80", "\xF4???"},
        {"\xF5", "\xF5"},
        {"\xE2\x82", "\xE2?"},
        {"\xC3", "\xC3"},
        {"\xC3\n", "\xC3?"},
        {"\xE2\x80\xA8\xE2\x80\xAE\xE2\x81\xA6\xE2\x81\xA9", "????"},  // U+2028, U+202E, U+2066, U+2069
        {"\xE2\x80\x8C\xE2\x80\x8F\xE2\x80\xAF\xE2\x81\xA5\xE2\x81\xAA",
         "\xE2\x80\x8C\xE2\x80\x8F\xE2\x80\xAF\xE2\x81\xA5\xE2\x81\xAA"},  // the ones beside, and marks
    };
    for (const auto& c : cases) EXPECT_EQ(Printable(c.text), c.shown) << c.text;
}

TEST(Printable, KeepsWhatItIsTold) {
    EXPECT_EQ(Printable("\ta\r\x9B\n", "\t\n"), "\ta??\n");
    EXPECT_EQ(Printable("a\tb" + kNul, "\t"), "a\tb?");
}

}  // namespace
