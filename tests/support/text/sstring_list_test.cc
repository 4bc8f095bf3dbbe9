#include "support/text/sstring_list.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

namespace {

TEST(SStringList, IsBuiltFromWhatTheProgramHas) {
    const char* const names[] = {"adm", "", "bin", nullptr};
    EXPECT_EQ(SStringList(names), SStringList({"adm", "", "bin"}));
    EXPECT_EQ(SStringList("one").Count(), 1U);
    EXPECT_EQ(SStringList(SString("one")), SStringList("one"));
    EXPECT_TRUE(SStringList().IsEmpty());
    EXPECT_TRUE(SStringList(static_cast<const char* const*>(nullptr)).IsEmpty());
}

TEST(SStringList, IsPushedPoppedAndShifted) {
    SStringList list;
    list.Push("b");
    list.Push(SStringList({"c", "d"}));
    list.Push(SStringList());
    EXPECT_EQ(list.Shift(), "b");
    EXPECT_EQ(list.Pop(), "d");
    EXPECT_EQ(list.Pop(), "c");
    EXPECT_EQ(list.Pop(), "");
    EXPECT_EQ(list.Shift(), "");
}

TEST(SStringList, TakesNumbers) {
    SStringList list = 0;
    list.Push(0);
    list.Push(-17L);
    EXPECT_EQ(list, SStringList({"0", "0", "-17"}));
}

TEST(SStringList, TakesItselfAndItsElements) {
    SStringList list{"a", "b"};
    list.Push(list);
    EXPECT_EQ(list, SStringList({"a", "b", "a", "b"}));
    list.Insert(list, 1);
    EXPECT_EQ(list.Join(), "aababbab");
    list.Delete(list[0]);
    EXPECT_EQ(list.Join(), "bbbb");
    list.Push(list[0]);
    EXPECT_EQ(list.Count(), 5U);
}

TEST(SStringList, OfAMillionIsWalkedByShift) {
    SStringList list;
    for (int i = 0; i < 1000000; i++) list.Push(SString(i));
    for (int i = 0; i < 1000000; i++) ASSERT_EQ(list.Shift(), SString(i));
    EXPECT_TRUE(list.IsEmpty());
}

TEST(SStringList, InsertsAndSplices) {
    const struct {
        int at;
        SString inserted;
        int count;
        SString spliced;
    } cases[] = {
        {0, "xyabc", 2, "c"},   {1, "axybc", 1, "ac"},  {3, "abcxy", 1, "abc"},  {9, "abcxy", 9, "abc"},
        {-1, "xyabc", 1, "bc"}, {1, "axybc", 0, "abc"}, {1, "axybc", -1, "abc"}, {1, "axybc", INT32_MAX, "a"},
    };
    for (const auto& c : cases) {
        SStringList list{"a", "b", "c"};
        SStringList other = list;
        list.Insert({"x", "y"}, c.at);
        EXPECT_EQ(list.Join(), c.inserted) << c.at;
        other.Splice(c.at, c.count);
        EXPECT_EQ(other.Join(), c.spliced) << c.at << " " << c.count;
    }
}

TEST(SStringList, GivesItsElements) {
    SStringList list{"a", "b"};
    EXPECT_EQ(list.Get(1), "b");
    for (const int outside : {-1, 2, INT32_MAX, INT32_MIN}) EXPECT_EQ(list.Get(outside), "");
    list[1] = "c";
    EXPECT_TRUE(list.Contains("c"));
    EXPECT_FALSE(list.Contains("b"));
    EXPECT_FALSE(list.Contains(""));
}

TEST(SStringList, DeletesEveryEqualElement) {
    SStringList list{"a", "b", "a", "A", ""};
    list.Delete("a");
    EXPECT_EQ(list, SStringList({"b", "A", ""}));
}

TEST(SStringList, IsJoined) {
    EXPECT_EQ(SStringList().Join(","), "");
    EXPECT_EQ(SStringList("a").Join(","), "a");
    EXPECT_EQ(SStringList({"a", "", "b"}).Join(", "), "a, , b");
    EXPECT_EQ(SStringList({"a", "b"}).Join(), "ab");
}

TEST(SStringList, IsSortedAndThinnedOut) {
    SStringList list{"b", "a", "\xC3", "B", "a", ""};
    list.Sort();
    EXPECT_EQ(list, SStringList({"", "B", "a", "a", "b", "\xC3"}));
    list.Unique();
    EXPECT_EQ(list, SStringList({"", "B", "a", "b", "\xC3"}));
    SStringList unsorted{"a", "b", "a"};
    unsorted.Unique();
    EXPECT_EQ(unsorted.Count(), 3U);
}

TEST(SStringList, ChopsAndLowersEveryElement) {
    SStringList list{"A\n", "", "B"};
    list.Chop();
    EXPECT_EQ(list, SStringList({"A", "", ""}));
    EXPECT_EQ(LowerCase({"A", "bC"}), SStringList({"a", "bc"}));
}

TEST(SStringList, IsEmptied) {
    SStringList one{"a"};
    one.Undef();
    EXPECT_TRUE(one.IsEmpty());
    SStringList other{"a"};
    other.Reset();
    EXPECT_TRUE(other.IsEmpty());
}

TEST(SStringList, GivesPointersForExec) {
    SStringList list{"program", ""};
    const auto pointers = list.Pointers();
    ASSERT_EQ(pointers.size(), 3U);
    EXPECT_STREQ(pointers[0], "program");
    EXPECT_STREQ(pointers[1], "");
    EXPECT_EQ(pointers[2], nullptr);
    EXPECT_EQ(SStringList().Pointers().front(), nullptr);
}

TEST(Grep, SelectsAndRejects) {
    const struct {
        SStringList list;
        SString expression;
        SStringList selected;
    } cases[] = {
        {{"DomainName=a", "Other=b", "DomainNameOld=c"},
         "/^DomainName/",
         {"DomainName=a", "DomainNameOld=c"}},
        {{"", "   ", "# c", " \t# c", "a # c", " a"}, "!/^\\s*(#|$)/", {"a # c", " a"}},
        {{"\n", "#\n", "a\n"}, "!/^\\s*(#|$)/", {"a\n"}},
        {{"", " ", "a"}, "/\\S/", {"a"}},
        {{"a/b", "ab"}, "/a\\/b/", {"a/b"}},
        {{"a/b", "ab"}, "/a/b/", {"a/b"}},
        {{"b", "a", "b"}, "/b/", {"b", "b"}},
        {{"a"}, "//", {"a"}},
        {{"a"}, "!//", {}},
        {{}, "/a/", {}},
        {{"a"}, "a", {}},
        {{"a"}, "/(/", {}},
        {{"a", "("}, "!/(/", {"a", "("}},
    };
    for (const auto& c : cases) {
        SStringList list = c.list;
        EXPECT_EQ(list.Grep(c.expression), c.selected) << c.expression;
        EXPECT_EQ(list, c.list) << c.expression;
    }
}

TEST(Grep, SubstitutesInPlaceAndGivesTheChanged) {
    const struct {
        SStringList list;
        SString expression;
        SStringList left, changed;
    } cases[] = {
        {{"  a b", "c", " d"}, "s/^\\s+//", {"a b", "c", "d"}, {"a b", "d"}},
        {{"a b c", "d"}, "s/\\s.*//", {"a", "d"}, {"a"}},
        {{"a", ""}, "s/^/        /", {"        a", "        "}, {"        a", "        "}},
        {{"a@b", ""}, "s/(.*)/SMTP <$1>/", {"SMTP <a@b>", "SMTP <>"}, {"SMTP <a@b>", "SMTP <>"}},
        {{"SMTP <a@b>", "Manager"}, "s/^SMTP //", {"<a@b>", "Manager"}, {"<a@b>"}},
        {{"<a@b>", "<@a:b@c>", "<>"}, "s/^<([^@].*)>/$1/", {"a@b", "<@a:b@c>", "<>"}, {"a@b"}},
        {{"25 a b", "c"}, "s/.* //", {"b", "c"}, {"b"}},
        {{"tcp 0 0 *.25 *.* LISTEN\n", "tcp 0 0 *.25 *.* TIME_WAIT\n"},
         "s/^tcp(\\s+\\S+){3}\\.(\\d+)\\s+.*LISTEN\\s*$/$2/",
         {"25", "tcp 0 0 *.25 *.* TIME_WAIT\n"},
         {"25"}},
        {{"  12 ? 0:01 inetd\n", "PID TTY TIME CMD\n"},
         "s/^\\s*(\\d+).*\\s(\\S+)\\s*$/$1 $2/",
         {"12 inetd", "PID TTY TIME CMD\n"},
         {"12 inetd"}},
        {{"WWW-Server.install", "Dispatch.installed"},
         "s/\\.install$//",
         {"WWW-Server", "Dispatch.installed"},
         {"WWW-Server"}},
        {{"a/b"}, "s/\\//\\/\\//", {"a//b"}, {"a//b"}},
        {{"aa"}, "s/a/a/", {"aa"}, {"aa"}},
        {{"a"}, "s/(/x/", {"a"}, {}},
        {{"a"}, "s/a/b", {"a"}, {}},
        {{"a"}, "s/a/b/g", {"a"}, {}},
    };
    for (const auto& c : cases) {
        SStringList list = c.list;
        EXPECT_EQ(list.Grep(c.expression), c.changed) << c.expression;
        EXPECT_EQ(list, c.left) << c.expression;
    }
}

TEST(Lines, KeepTheirEnds) {
    const std::pair<SString, SStringList> cases[] = {
        {"", {}},         {"\n", {"\n"}},         {"a", {"a"}},
        {"a\n", {"a\n"}}, {"a\nb", {"a\n", "b"}}, {"\n\na\r\n", {"\n", "\n", "a\r\n"}},
    };
    for (const auto& [text, lines] : cases) EXPECT_EQ(Lines(text), lines) << text;
}

}  // namespace
