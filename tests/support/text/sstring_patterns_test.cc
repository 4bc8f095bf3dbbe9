// The operations of an SString that take a pattern or a separator.

#include <gtest/gtest.h>

#include "support/text/sstring.h"
#include "support/text/sstring_list.h"

namespace {

const SString kNul('\0', 1);

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

}  // namespace
