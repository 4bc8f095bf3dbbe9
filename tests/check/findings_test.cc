#include "check/findings.h"

#include <gtest/gtest.h>

namespace {

Findings Some() {
    Findings findings;
    findings.Ok("disk", "plenty");
    findings.Problem("port", "25 is held", {"stop it", ""}, "Which processes? = x");
    findings.NotLookedAt("boot", "no systemd");
    return findings;
}

TEST(Findings, AreCountedByGrade) {
    EXPECT_EQ(Some().Count(Grade::Ok), 1U);
    EXPECT_EQ(Some().Count(Grade::Note), 1U);
    EXPECT_EQ(Some().Count(Grade::Problem), 1U);
}

TEST(Findings, KeepNoControlCharacters) {
    Findings findings;
    findings.Note("port", "held by \x1b[2J\n", "kill \a", "Which processes? = \a");
    EXPECT_EQ(findings.All()[0].text, "held by ?[2J?");
    EXPECT_EQ(findings.All()[0].to_do, SStringList("kill ?"));
    EXPECT_EQ(findings.All()[0].answers, SStringList("Which processes? = ?"));
}

TEST(Findings, ComeBackFromAMessage) {
    EXPECT_EQ(FindingsFrom(ToMessage(Some())).All(), Some().All());
    EXPECT_TRUE(FindingsFrom(ToMessage(Findings())).All().empty());
}

}  // namespace
