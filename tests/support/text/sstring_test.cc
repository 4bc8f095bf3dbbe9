#include "support/text/sstring.h"

#include <gtest/gtest.h>

#include <climits>
#include <sstream>
#include <type_traits>

#include "support/text/sstring_list.h"

namespace {

const SString kNul('\0', 1);

TEST(SString, IsBuiltFromWhatTheProgramHas) {
    EXPECT_TRUE(SString().IsEmpty());
    EXPECT_EQ(SString(static_cast<const char*>(nullptr)), "");
    EXPECT_EQ(SString("a\0b"), "a");
    EXPECT_EQ(SString(std::string_view("a\0b", 3)).Length(), 3U);
    EXPECT_EQ(SString(-17), "-17");
    EXPECT_EQ(SString(4294967295U), "4294967295");
    EXPECT_EQ(SString(LONG_MIN), "-9223372036854775808");
    EXPECT_EQ(SString('=', 5), "=====");
    EXPECT_STREQ(SString().CString(), "");
}

TEST(SString, OfANumberIsItsDecimalText) {
    SString text = 0;
    EXPECT_EQ(text, "0");
    EXPECT_EQ(text.Length(), 1U);
    EXPECT_EQ(SString(0), "0");
    EXPECT_EQ(SString(0L), "0");
    EXPECT_EQ(SString(0U), "0");
    text = "a";
    text += 0;
    EXPECT_EQ(text, "a0");
    EXPECT_EQ(text + 65, "a065");
    EXPECT_EQ(65 + text, "65a0");
    EXPECT_FALSE(text == 0);
    text = 0;
    EXPECT_EQ(text, "0");
    EXPECT_TRUE(text == 0);
    EXPECT_EQ(text = 18446744073709551615UL, "18446744073709551615");
}

TEST(SString, OfANullPointerIsEmpty) {
    const char* const null = nullptr;
    SString text = null;
    EXPECT_TRUE(text.IsEmpty());
    text = "a";
    EXPECT_FALSE(text == null);
    text = nullptr;
    EXPECT_TRUE(text.IsEmpty());
}

TEST(SString, TakesNoCharacterOrTruthValueForANumber) {
    static_assert(!std::is_constructible_v<SString, char> && !std::is_constructible_v<SString, bool>);
    static_assert(!std::is_assignable_v<SString&, char> && !std::is_assignable_v<SString&, bool>);
}

TEST(SString, OfACharacterIsEmptyWithoutACount) {
    EXPECT_EQ(SString('x', 3), "xxx");
    for (const long count : {0L, -1L, LONG_MIN}) EXPECT_TRUE(SString('x', count).IsEmpty()) << count;
}

TEST(SString, CopiesAreIndependent) {
    SString text = "ab";
    const SString copy = text;
    text += 'c';
    EXPECT_EQ(copy, "ab");
    text += text;
    EXPECT_EQ(text, "abcabc");
}

TEST(SString, TakesTextAndNumbers) {
    SString text = "a";
    EXPECT_EQ(text = -17L, "-17");
    EXPECT_EQ(text = 0, "0");
    EXPECT_EQ(text = "b", "b");
    EXPECT_EQ(text = SString("c"), "c");
}

TEST(SString, IsJoinedOnEitherSide) {
    const SString b = "b";
    EXPECT_EQ("a" + b, "ab");
    EXPECT_EQ(b + "c", "bc");
    EXPECT_EQ('a' + b, "ab");
    EXPECT_EQ(b + 'c', "bc");
    EXPECT_EQ(b + b, "bb");
    EXPECT_EQ((kNul + b).Length(), 2U);
}

TEST(SString, IsIndexedFromZeroAndMinusOneIsTheLast) {
    const SString text = "abc";
    const struct {
        long index;
        char character;
    } cases[] = {{0, 'a'}, {2, 'c'}, {3, '\0'}, {-1, 'c'}, {-2, '\0'}, {LONG_MAX, '\0'}, {LONG_MIN, '\0'}};
    for (const auto& c : cases) EXPECT_EQ(text[c.index], c.character) << c.index;
    EXPECT_EQ(SString()[-1], '\0');
    EXPECT_EQ(SString()[0], '\0');
}

TEST(SString, ComparesByByteValue) {
    EXPECT_LT(SString("a"), SString("b"));
    EXPECT_LT(SString("a"), SString("aa"));
    EXPECT_LT(SString("z"), SString("\xC3"));
    EXPECT_LT(SString("a"), "a" + kNul);
    EXPECT_FALSE("a" + kNul == "a");
}

TEST(SString, Chops) {
    const struct {
        SString text, chopped, without_line_end;
    } cases[] = {
        {"", "", ""},          {"a", "", "a"},          {"a\n", "a", "a"},
        {"a\r\n", "a\r", "a"}, {"\n", "", ""},          {"\r\n", "\r", ""},
        {"a\r", "a", "a\r"},   {"a\n\n", "a\n", "a\n"}, {"a\r\r\n", "a\r\r", "a\r"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SString(c.text).Chop(), c.chopped);
        EXPECT_EQ(SString(c.text).ChopLineEnd(), c.without_line_end);
    }
}

TEST(SString, LowersAsciiLettersOnly) {
    EXPECT_EQ(SString("AbZ@[`{\xC9").LowerCase(), "abz@[`{\xC9");
    EXPECT_EQ(("A" + kNul + "B").LowerCase(), "a" + kNul + "b");
}

TEST(SString, FindsACharacter) {
    const struct {
        char character;
        long from, position;
    } cases[] = {{'a', 0, 0},  {'b', 0, 1},  {'a', 1, 2},        {'a', 3, -1},
                 {'x', 0, -1}, {'a', -5, 0}, {'a', LONG_MAX, -1}};
    for (const auto& c : cases) EXPECT_EQ(SString("aba").Index(c.character, c.from), c.position) << c.from;
    EXPECT_EQ(("a" + kNul).Index('\0'), 1);
    EXPECT_LT(SString("a").Index('\0'), 0);
    EXPECT_LT(SString().Index('a'), 0);
}

TEST(SString, BecomesANumber) {
    const struct {
        SString text;
        long number;
    } cases[] = {
        {"", 0},
        {"a", 0},
        {"12", 12},
        {" \t12", 12},
        {"+7", 7},
        {"-7", -7},
        {"- 7", 0},
        {"080", 80},
        {"0x10", 0},
        {"443x", 443},
        {"1 2", 1},
        {"4" + kNul + "2", 4},
        {"9223372036854775807", LONG_MAX},
        {"9223372036854775808", LONG_MAX},
        {"18446744073709551696", LONG_MAX},
        {SString('9', 1000), LONG_MAX},
        {"-" + SString('9', 1000), LONG_MIN},
    };
    for (const auto& c : cases) EXPECT_EQ(c.text.ToNumber(), c.number) << c.text;
}

TEST(SString, IsReadLineByLine) {
    const struct {
        SString text;
        SStringList lines;
    } cases[] = {
        {"", {}},
        {"\n", {"\n"}},
        {"a\nb\n", {"a\n", "b\n"}},
        {"a\nb", {"a\n", "b\n"}},
        {"a\r\n\r\n", {"a\r\n", "\r\n"}},
        {"a" + kNul + "b\n", {"a" + kNul + "b\n"}},
    };
    for (const auto& c : cases) {
        std::istringstream in(c.text.Bytes());
        SStringList lines = "left over";
        in >> lines;
        EXPECT_EQ(lines, c.lines) << c.text;
    }
}

TEST(SString, ReadsNothingAtTheEnd) {
    std::istringstream in("a");
    SString line;
    EXPECT_TRUE(in >> line);
    EXPECT_FALSE(in >> line);
    EXPECT_EQ(line, "");
}

TEST(SString, IsWrittenAsItIs) {
    std::ostringstream out;
    const SString text = "a" + kNul + "\n";
    out << text;
    text.Write(out);
    EXPECT_EQ(SString(out.str()), text + text);
}

}  // namespace
