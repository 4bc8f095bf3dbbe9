#include "install/postmaster/dialogue.h"

#include <gtest/gtest.h>

#include "tests/dialogue.h"

namespace {

TEST(IsGoodPassword, WantsSixCharactersTheFirstOneVisible) {
    const struct {
        SString text;
        bool good;
    } cases[] = {{"", false},         {"five5", false},       {"sixsix", true},    {" seven7", false},
                 {"\tseven7", false}, {"with a blank", true}, {"\vvvvvvv", false}, {"      ", false}};
    for (const auto& c : cases) EXPECT_EQ(IsGoodPassword(c.text), c.good) << c.text;
}

TEST(IsAccessDomain, TakesNamesAddressesAndNetworks) {
    const struct {
        const char* text;
        bool good;
    } cases[] = {{"example.com", true},     {"host", true},          {"10.0.0.0/8", true},
                 {"123.45.60.64/26", true}, {"300.1.1.1", true},     {"1.2.3.4 and more", true},
                 {"1.2.3", false},          {"1.2.3.1234567", true}, {"bad..example", false},
                 {"-example", false},       {"a_b", false},          {"", false}};
    for (const auto& c : cases) EXPECT_EQ(IsAccessDomain(c.text), c.good) << c.text;
}

TEST(AskPassword, AsksUntilItIsGood) {
    const Dialogue dialogue("short\n\n blank1\ngood enough\n");
    EXPECT_EQ(AskPassword(), SString("good enough"));
}

TEST(AskPassword, EndsWithTheInput) {
    const Dialogue dialogue("short");
    EXPECT_EQ(AskPassword(), std::nullopt);
    EXPECT_TRUE(dialogue.Screen().EndsWith("Installation aborted.\n"));
}

TEST(AskAccessDomains, SplitsAtBlanksAndCommas) {
    const struct {
        const char* answers;
        SStringList domains;
    } cases[] = {
        {"example.com, 10.0.0.0/8 host.example.com\n", {"example.com", "10.0.0.0/8", "host.example.com"}},
        {",a.example,, b.example ,\n", {"a.example", "b.example"}},
        {"\n", {"old.example", "older.example"}},
        {"", {"old.example", "older.example"}},
        {" , \n", {"old.example", "older.example"}},
        {"a.example b..example\n , \n", {"old.example", "older.example"}},
        {"b..example\na.example\n", {"a.example"}},
    };
    for (const auto& c : cases) {
        const Dialogue dialogue(c.answers);
        EXPECT_EQ(AskAccessDomains({"old.example", "older.example"}, "example.com"), c.domains) << c.answers;
    }
}

TEST(AskAccessDomains, OffersRefusedEntriesAgain) {
    const Dialogue dialogue("a.example  b..example\nc.example\n");
    EXPECT_EQ(AskAccessDomains("old.example", "example.com"), SStringList("c.example"));
    EXPECT_TRUE(dialogue.Screen().Matches("Access Domains: \\[a\\.example,b\\.\\.example\\] "));
}

TEST(AskAccessDomains, EndsWithTheInputWhenTheOfferIsRefused) {
    for (const char* answers : {"b..example\n", "b..example", ""}) {
        const Dialogue dialogue(answers);
        EXPECT_EQ(AskAccessDomains("old..example", "example.com"), std::nullopt);
        EXPECT_TRUE(dialogue.Screen().EndsWith("Installation aborted.\n"));
    }
}

}  // namespace
