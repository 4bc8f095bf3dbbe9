#include "support/text/pattern.h"

#include <gtest/gtest.h>

#include "support/text/sstring_list.h"

namespace {

constexpr size_t kLong = 10000000;

/// "begin-end" of each group, "-" for one that took no part; empty where nothing matches.
SString Spans(std::string_view expression, std::string_view subject, size_t from = 0) {
    SString spans;
    for (const auto& group : Pattern(expression).Find(subject, from).value_or(Pattern::Match())) {
        if (!spans.IsEmpty()) spans += ' ';
        if (group.took_part) spans += SString(group.begin);
        spans += '-';
        if (group.took_part) spans += SString(group.end);
    }
    return spans;
}

TEST(Pattern, FindsTheFirstMatchAndItsGroups) {
    const struct {
        std::string expression, subject;
        size_t from;
        std::string spans;
    } cases[] = {
        {"b", "abcb", 0, "1-2"},
        {"b", "abcb", 2, "3-4"},
        {"b", "abcb", 4, ""},
        {"b", "abcb", 5, ""},
        {"b", "", 0, ""},
        {"", "", 0, "0-0"},
        {"", "ab", 2, "2-2"},
        {"a(b)?(c)", "ac", 0, "0-2 - 1-2"},
        {"(a)|(b)", "a", 0, "0-1 0-1 -"},
        {"^b", "abcb", 1, ""},
    };
    for (const auto& c : cases) EXPECT_EQ(Spans(c.expression, c.subject, c.from), c.spans) << c.expression;
}

TEST(Pattern, HasTheCommonSyntax) {
    const struct {
        SString expression, matching, other;
    } cases[] = {
        {"^ab", "abc", "cab"},
        {"ab$", "cab", "abc"},
        {"ab$", "ab\n", "ab\n\n"},
        {"^a.c$", "abc", "a\nc"},
        {"^\\s$", "\t", "a"},
        {"^\\s$", "\v", SString('\0', 1)},
        {"^\\s$", "\r", "\xA0"},
        {"^\\S$", "\x85", " "},
        {"^\\d$", "7", "a"},
        {"^\\w$", "_", "\xE9"},
        {"^[^@]$", "\n", "@"},
        {"^[ \"]$", "\"", "'"},
        {"^[a-f]+$", "face", "fact "},
        {"^a*b+c?$", "bbc", "acc"},
        {"^a{3}$", "aaa", "aaaa"},
        {"^a{1,3}$", "aa", "aaaa"},
        {"^(#|$)", "# text", " # text"},
        {"^\\.\\/$", "./", "a/"},
        {SString("a\\x00b"), SString('a', 1) + SString('\0', 1) + "b", "ab"},
        {SString("a") + SString('\0', 1) + "b", SString('a', 1) + SString('\0', 1) + "b", "ab"},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(c.matching.Matches(c.expression)) << c.expression;
        EXPECT_FALSE(c.other.Matches(c.expression)) << c.expression;
    }
}

TEST(Pattern, ThatDoesNotCompileMatchesNothing) {
    for (const char* expression : {"(", "a)", "[", "*", "a{2,1}", "\\", "(?<", "(*UTF)a", "(*UCP)a"}) {
        const std::string subject = std::string("a") + expression;
        EXPECT_FALSE(Pattern(expression).IsValid()) << expression;
        EXPECT_FALSE(Pattern(expression).Find(subject).has_value()) << expression;
    }
}

TEST(Pattern, ThatIsTooLargeMatchesNothing) {
    EXPECT_FALSE(Pattern(std::string(100000, 'a')).IsValid());
    EXPECT_FALSE(Pattern("((a{1000}){1000}){1000}").IsValid());
    EXPECT_FALSE(Pattern(std::string(10000, '(') + std::string(10000, ')')).IsValid());
}

TEST(Pattern, ThatRunsAwayMatchesNothing) {
    for (const size_t length : {100UL, 1000UL, 100000UL}) {
        const SString subject = SString('a', length) + "c";
        for (const char* expression :
             {"(a+)+[bd]", "^(a|aa)+[bd]$", "(a*)*[bd]", "(.*)(.*)(.*)(.*)(.*)[xy]$"}) {
            EXPECT_FALSE(subject.Matches(expression)) << expression << " on " << length;
        }
    }
}

TEST(Pattern, SurvivesALineOfTenMegabytes) {
    const SString blanks(' ', kLong);
    const SString letters('x', kLong);
    const struct {
        SString subject, expression, replacement, result;
    } cases[] = {
        {blanks + "x", "^\\s+", "", "x"},
        {blanks, "\\s*$", "", ""},
        {letters + "  ", "\\s+$", "", letters},
        {letters + " y", ".* ", "", "y"},
        {letters + ".install", "\\.install$", "", letters},
        {"12 " + letters + " cron", "^\\s*(\\d+).*\\s(\\S+)\\s*$", "$1 $2", "12 cron"},
        {letters, "(.*)", "<$1>", "<" + letters + ">"},
        {"x " + blanks, "\\s.*", "", "x"},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(c.subject.S(c.expression, c.replacement) == c.result) << c.expression;
    }
    EXPECT_FALSE((blanks + "x").Matches("^\\s*(#|$)"));
    EXPECT_TRUE(blanks.Matches("^\\s*(#|$)"));
}

TEST(Pattern, IsBoundedWhereEveryStartingPointWouldRunOn) {
    // Each of the ten million starting points would read on to the end: quadratic, so it counts as no match.
    EXPECT_FALSE((SString(' ', kLong) + "x").Matches("\\s+$"));
    EXPECT_FALSE((SString('x', kLong) + " ").Matches("\\S*\\d"));
    EXPECT_FALSE((SString('a', kLong) + "c").Matches("(a+)+[bd]"));
    EXPECT_FALSE(SString('a', kLong).Matches("^((a|b)(c|a)?)*[xy]$"));
}

TEST(Pattern, LoopOfMatchesIsBoundedAsAWhole) {
    // Each of two million separators would look on to the end.
    SString text;
    for (int i = 0; i < 2000000; i++) text += "word,";
    EXPECT_LT(text.Split(",(?=.*[xyz]|.*d)").Count(), 2000000U);
    EXPECT_EQ(text.Split(",").Count(), 2000000U);
}

TEST(Pattern, StaysGoodWhileOthersAreAskedFor) {
    const Pattern kept("^kept$");
    for (int i = 0; i < 1000; i++) EXPECT_TRUE(SString(i).Matches("^" + SString(i) + "$"));
    EXPECT_TRUE(kept.Find("kept").has_value());
    EXPECT_TRUE(Pattern("^kept$").Find("kept").has_value());
}

TEST(Pattern, OfNoBytesMatchesThem) {
    EXPECT_TRUE(Pattern(std::string_view()).Find(std::string_view()).has_value());
    EXPECT_FALSE(Pattern("a").Find(std::string_view()).has_value());
}

}  // namespace
