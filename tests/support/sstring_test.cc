#include "support/sstring.h"

#include <gtest/gtest.h>

#include <climits>
#include <sstream>

#include "support/sstring_list.h"

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

TEST(SString, GivesTheGroupsOfAMatch) {
    const struct {
        SString text, pattern;
        SStringList groups;
    } cases[] = {
        {"DomainName=a.b c", "^DomainName=(\\S+)", {"a.b"}},
        {"DomainName a.b", "^DomainName=(\\S+)", {}},
        {"DomainName = a.b", "^DomainName=(\\S+)", {}},
        {"ac", "(a)(b)?(c)", {"a", "", "c"}},
        {"ac", "/(a)(b)?(c)/", {"a", "", "c"}},
        {"abc", "b", {}},
        {"10.1.2.3/24 x", "^(\\d{1,3}(\\.\\d{1,3}){3}(/\\d{1,2})?)", {"10.1.2.3/24", ".3", "/24"}},
        {"10.1.2", "^(\\d{1,3}(\\.\\d{1,3}){3}(/\\d{1,2})?)", {}},
        {"abc", "(", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(c.text.M(c.pattern), c.groups) << c.text << " " << c.pattern;
}

TEST(SString, TellsWhetherItMatches) {
    const struct {
        SString text, pattern;
        bool matches;
    } cases[] = {
        {"# c", "^#", true},
        {" # c", "^#", false},
        {"\tmore", "^\\s", true},
        {"entry", "^\\s", false},
        {"10.1.2.3", "^\\d{1,3}(\\.\\d{1,3}){3}(/\\d{1,2})?", true},
        {"10.1.2.3/8", "/^\\d{1,3}(\\.\\d{1,3}){3}(/\\d{1,2})?$/", true},
        {"1234.1.2.3", "^\\d{1,3}(\\.\\d{1,3}){3}(/\\d{1,2})?", false},
        {"/a/", "/", true},
        {"a", "/", false},
        {"", "", true},
        {"a", "[", false},
    };
    for (const auto& c : cases) EXPECT_EQ(c.text.Matches(c.pattern), c.matches) << c.text << " " << c.pattern;
}

TEST(SString, Substitutes) {
    const struct {
        SString text, pattern, replacement, result;
    } cases[] = {
        {"mail.old.example", "\\..*", "", "mail"},
        {"mail", "\\..*", "", "mail"},
        {".", "\\..*", "", ""},
        {"  two words ", "^\\s+", "", "two words "},
        {"two words", "\\s.*", "", "two"},
        {" \"Ann\" ", "^[ \"]+", "", "Ann\" "},
        {"Ann\" \"", "[ \"]+$", "", "Ann"},
        {"line", "^", "        ", "        line"},
        {"a@b.example", "(.*)", "SMTP <$1>", "SMTP <a@b.example>"},
        {"", "(.*)", "SMTP <$1>", "SMTP <>"},
        {"SMTP <a@b.example>", "^SMTP ", "", "<a@b.example>"},
        {"<a@b.example>", "^<([^@].*)>", "$1", "a@b.example"},
        {"<@a:c@b.example>", "^<([^@].*)>", "$1", "<@a:c@b.example>"},
        {"1 2 3", ".* ", "", "3"},
        {"tcp 0 0 *.25 *.* 0 0 LISTEN", "^tcp(\\s+\\S+){3}\\.(\\d+)\\s+.*LISTEN\\s*$", "$2", "25"},
        {"tcp 0 0 127.0.0.1.110 *.* 0 0 LISTEN \n", "^tcp(\\s+\\S+){3}\\.(\\d+)\\s+.*LISTEN\\s*$", "$2",
         "110"},
        {"udp 0 0 *.25 *.* 0 0 LISTEN", "^tcp(\\s+\\S+){3}\\.(\\d+)\\s+.*LISTEN\\s*$", "$2",
         "udp 0 0 *.25 *.* 0 0 LISTEN"},
        {"  314 ?        00:00:00 popd\n", "^\\s*(\\d+).*\\s(\\S+)\\s*$", "$1 $2", "314 popd"},
        {"  PID TTY          TIME CMD", "^\\s*(\\d+).*\\s(\\S+)\\s*$", "$1 $2",
         "  PID TTY          TIME CMD"},
        {"WWW-Server.install", "\\.install$", "", "WWW-Server"},
        {"WWW-Server.installed", "\\.install$", "", "WWW-Server.installed"},
        {"abcabc", "b", "x", "axcabc"},
        {"abc", "(", "x", "abc"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.text.S(c.pattern, c.replacement), c.result) << c.text << " " << c.pattern;
    }
}

TEST(SString, ExpandsTheReplacementOnce) {
    const struct {
        SString text, pattern, replacement, result;
    } cases[] = {
        {"a$2b", "(.*)", "<$1>", "<a$2b>"},
        {"$1$1", "(.)(.)(.*)", "$3$2$1", "$11$"},
        {"ab", "(a)(b)", "$2$1$2", "bab"},
        {"ab", "(a)", "$", "$b"},
        {"ab", "(a)", "$$1", "$ab"},
        {"ab", "(a)", "$x", "$xb"},
        {"ab", "(a)", "$0", "$0b"},
        {"ab", "(a)", "$2", "b"},
        {"ab", "(a)(x)?", "[$2]", "[]b"},
        {"ab", "(a)", "\\1&", "\\1&b"},
        {"abcdefghijkl", "(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)", "$11$10$1", "kjal"},
        {"a", "(a)", "$99999999999999999999", "999999999999999999"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.text.S(c.pattern, c.replacement), c.result) << c.replacement;
}

TEST(SString, SubstitutesEveryMatchOnRequest) {
    const struct {
        SString text, pattern, replacement, result;
    } cases[] = {
        {"abcabc", "b", "xx", "axxcaxxc"}, {"abc", "", "-", "-a-b-c-"}, {"aaa", "a*", "-", "--"},
        {"a b", "x*", "-", "-a- -b-"},     {"", "b", "x", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(c.text.S(c.pattern, c.replacement, "g"), c.result) << c.pattern;
}

TEST(SString, SplitsAtACharacter) {
    const struct {
        SString text;
        char separator;
        int limit;
        SStringList fields;
    } cases[] = {
        {"", ' ', 0, {}},
        {" \t\r\n\v\f", ' ', 0, {}},
        {"  one \t two\nthree ", ' ', 0, {"one", "two", "three"}},
        {" a b  c ", ' ', 2, {"a", "b  c "}},
        {" a b ", ' ', 1, {"a b "}},
        {"a ", ' ', 2, {"a"}},
        {"a,b", ',', 0, {"a", "b"}},
        {",a,,b,,", ',', 0, {"", "a", "", "b"}},
        {",", ',', 0, {}},
        {"", ',', 0, {}},
        {"a,b,c", ',', 2, {"a", "b,c"}},
        {"a.b", '.', 0, {"a", "b"}},
        {"a" + kNul + "b", '\0', 0, {"a", "b"}},
    };
    for (const auto& c : cases) EXPECT_EQ(c.text.Split(c.separator, c.limit), c.fields) << c.text;
}

TEST(SString, SplitsAtAPattern) {
    const struct {
        SString text, pattern;
        int limit;
        SStringList fields;
    } cases[] = {
        {"", "[\\s,]+", 0, {}},
        {" , ", "[\\s,]+", 0, {}},
        {"a, b,,c", "[\\s,]+", 0, {"a", "b", "c"}},
        {" a, b ,", "[\\s,]+", 0, {"", "a", "b"}},
        {"a b c", "[\\s,]+", 2, {"a", "b c"}},
        {"a b c", "[\\s,]+", 1, {"a b c"}},
        {"abc", "", 0, {"a", "b", "c"}},
        {"axb", "x*", 0, {"a", "b"}},
        {"a/b", "/", 0, {"a", "b"}},
        {"a(b", "(", 0, {"a(b"}},
        {"aXb", "(x|X)", 0, {"a", "b"}},
    };
    for (const auto& c : cases) EXPECT_EQ(c.text.Split(c.pattern, c.limit), c.fields) << c.text << c.pattern;
}

TEST(SString, SplitsExactly) {
    const struct {
        SString text, separator;
        int limit;
        SStringList fields;
    } cases[] = {
        {"", ":", 0, {}},
        {":", ":", 0, {"", ""}},
        {"root:x:0:0::/root:", ":", 0, {"root", "x", "0", "0", "", "/root", ""}},
        {"a:b:c", ":", 2, {"a", "b:c"}},
        {"a::b", "::", 0, {"a", "b"}},
        {"a.b", ".", 0, {"a", "b"}},
        {"ab", "", 0, {"ab"}},
        {"ab", ":", 0, {"ab"}},
    };
    for (const auto& c : cases) EXPECT_EQ(c.text.SplitExact(c.separator, c.limit), c.fields) << c.text;
}

TEST(SString, SplitsALongTextInOnePass) {
    SString text;
    for (int i = 0; i < 1000000; i++) text += "word , ";
    EXPECT_EQ(text.Split("[\\s,]+").Count(), 1000000U);
    EXPECT_EQ(text.Split(',').Count(), 1000001U);
    EXPECT_EQ(text.Split(' ').Count(), 2000000U);
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
    };
    for (const auto& c : cases) EXPECT_EQ(Printable(c.text), c.shown) << c.text;
}

TEST(Printable, KeepsWhatItIsTold) {
    EXPECT_EQ(Printable("\ta\r\x9B\n", "\t\n"), "\ta??\n");
    EXPECT_EQ(Printable("a\tb" + kNul, "\t"), "a\tb?");
}

}  // namespace
