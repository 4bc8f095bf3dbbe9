#include "check/report.h"

#include <gtest/gtest.h>

namespace {

TEST(PlainReport, HasALineForEachFindingAndEachTask) {
    Findings findings;
    findings.Ok("disk", "plenty");
    findings.Problem("port", "25 is held", {"stop it", "disable it"});
    EXPECT_EQ(PlainReport(findings),
              "ok       disk: plenty\n"
              "problem  port: 25 is held\n"
              "            do: stop it\n"
              "            do: disable it\n"
              "1 problem, 0 notes.\n");
}

TEST(PlainReport, CountsNone) {
    EXPECT_EQ(PlainReport(Findings()), "0 problems, 0 notes.\n");
}

TEST(JsonReport, HasTheSame) {
    Findings findings;
    findings.Problem("port", "held by \"x\"", "stop it");
    findings.NotLookedAt("boot", "no systemd");
    EXPECT_EQ(JsonReport(findings), R"({
  "findings": [
    {
      "about": "port",
      "grade": "problem",
      "looked_at": true,
      "text": "held by \"x\"",
      "to_do": [
        "stop it"
      ]
    },
    {
      "about": "boot",
      "grade": "note",
      "looked_at": false,
      "text": "not looked at: no systemd",
      "to_do": []
    }
  ],
  "notes": 1,
  "problems": 1
}
)");
}

TEST(JsonReport, HasNoBytesThatAreNoUtf8) {
    Findings findings;
    findings.Ok("disk", "caf\xe9");
    EXPECT_NE(JsonReport(findings).Index('\xef'), -1);
    EXPECT_EQ(JsonReport(findings).Index('\xe9'), -1);
}

}  // namespace
