#include "support/text/utf8.h"

#include <gtest/gtest.h>

namespace {

TEST(Utf8, TellsSequences) {
    EXPECT_EQ(Utf8Length("a", 0), 1U);
    EXPECT_EQ(Utf8Length("a\xC3\xA9", 1), 2U);
    EXPECT_EQ(Utf8Length("\xE2\x82\xAC", 0), 3U);
    EXPECT_EQ(Utf8Length("\xF0\x9F\x93\xAB", 0), 4U);
    for (const char* text : {"\x80", "\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF"}) {
        EXPECT_EQ(Utf8Length(text, 0), 0U);
    }
}

TEST(Utf8, NumbersCharacters) {
    EXPECT_EQ(Utf8Character("a"), U'a');
    EXPECT_EQ(Utf8Character("\xC3\xA9"), U'\u00E9');
    EXPECT_EQ(Utf8Character("\xE2\x82\xAC"), U'\u20AC');
    EXPECT_EQ(Utf8Character("\xF0\x9F\x93\xAB"), U'\U0001F4EB');
}

}  // namespace
