#include "install/record/escapes.h"

#include <gtest/gtest.h>

namespace {

SString Bytes(std::string_view bytes) {
    return SString(bytes);
}

TEST(Escapes, LeaveTextAsItIs) {
    for (const char* text :
         {"", "/etc/inetd.conf", "caf\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x93\xAB", "a \"b\" 'c'"}) {
        EXPECT_EQ(Escaped(text), text);
        EXPECT_EQ(Unescaped(text), SString(text));
    }
}

TEST(Escapes, StandForWhatAPagerObeysOrHides) {
    using namespace std::string_view_literals;
    const struct {
        std::string_view bytes;
        const char* text;
    } cases[] = {
        {"\\"sv, "\\\\"},
        {"\\x41"sv, "\\\\x41"},
        {"\0"sv, "\\x00"},
        {"a\tb\n"sv, "a\\x09b\\x0a"},
        {"\x1B[2J"sv, "\\x1b[2J"},
        {"\x7F"sv, "\\x7f"},
        {"\xC2\x9B"sv, "\\xc2\\x9b"},                    // CSI in one character
        {"\xE2\x80\xA8"sv, "\\xe2\\x80\\xa8"},           // line separator
        {"\xE2\x80\xAE"sv, "\\xe2\\x80\\xae"},           // right-to-left override
        {"\xE2\x81\xA6"sv, "\\xe2\\x81\\xa6"},           // isolate
        {"\xF3\xA0\x81\x81"sv, "\\xf3\\xa0\\x81\\x81"},  // a tag, invisible
        {"\xE9"sv, "\\xe9"},                             // ISO 8859-1
        {"\xC0\xAF"sv, "\\xc0\\xaf"},                    // overlong
        {"\xED\xA0\x80"sv, "\\xed\\xa0\\x80"},           // surrogate
        {"\xE2\x82"sv, "\\xe2\\x82"},                    // cut
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Escaped(Bytes(c.bytes)), c.text);
        EXPECT_EQ(Unescaped(c.text), Bytes(c.bytes)) << c.text;
    }
}

TEST(Escapes, AreRefusedWhereTheyAreNone) {
    for (const char* text : {"\\", "a\\", "\\x", "\\x4", "\\xg0", "\\x4g", "\\n", "\\X41", "\\\\\\"}) {
        EXPECT_EQ(Unescaped(text), std::nullopt) << text;
    }
}

TEST(Escapes, BringAnyBytesBack) {
    unsigned seed = 1;
    for (int round = 0; round < 20000; ++round) {
        std::string bytes;
        for (int i = 0; i < 12; ++i) {
            seed = seed * 1664525 + 1013904223;
            constexpr std::string_view kLikely = "\\x\xC2\xE2\x80\xA8\"4";
            const unsigned choice = seed >> 24U;
            bytes += choice < 128 ? kLikely[choice % kLikely.size()] : static_cast<char>(choice * 7);
        }
        EXPECT_EQ(Unescaped(Escaped(SString(bytes))), SString(bytes));
    }
}

}  // namespace
