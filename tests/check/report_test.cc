#include "check/report.h"

#include <gtest/gtest.h>

namespace {

std::vector<ExpectedQuestion> Questions() {
    return {{"Which method?", "P", ""},
            {"Postmaster password", std::nullopt, ""},
            {"Mail domains", "", "perhaps"}};
}

TEST(ExpectedQuestions, ComeBackFromAMessage) {
    EXPECT_EQ(QuestionsFrom(ToMessage(Questions())), Questions());
}

TEST(PlainReport, HasALineForEachFindingAndWhatToDoAboutIt) {
    Findings findings;
    findings.Ok("disk", "plenty");
    findings.Problem("port", "25 is held", {"stop it", "disable it"}, "Which processes? = x");
    EXPECT_EQ(PlainReport({findings, Questions()}),
              "ok       disk: plenty\n"
              "problem  port: 25 is held\n"
              "            answer: Which processes? = x\n"
              "            do: stop it\n"
              "            do: disable it\n"
              "question Which method? [P]\n"
              "question Postmaster password\n"
              "question Mail domains []: perhaps\n"
              "1 problem, 0 notes.\n");
}

TEST(PlainReport, CountsNone) {
    EXPECT_EQ(PlainReport({}), "0 problems, 0 notes.\n");
}

TEST(JsonReport, HasTheSame) {
    Findings findings;
    findings.Problem("port", "held by \"x\"", "stop it", "Which processes? = x");
    findings.NotLookedAt("boot", "no systemd");
    EXPECT_EQ(JsonReport({findings, Questions()}), R"({
  "findings": [
    {
      "about": "port",
      "grade": "problem",
      "looked_at": true,
      "text": "held by \"x\"",
      "to_do": [
        "stop it"
      ],
      "answers": [
        "Which processes? = x"
      ]
    },
    {
      "about": "boot",
      "grade": "note",
      "looked_at": false,
      "text": "not looked at: no systemd",
      "to_do": [],
      "answers": []
    }
  ],
  "notes": 1,
  "problems": 1,
  "questions": [
    {
      "question": "Which method?",
      "default": "P",
      "condition": null
    },
    {
      "question": "Postmaster password",
      "default": null,
      "condition": null
    },
    {
      "question": "Mail domains",
      "default": "",
      "condition": "perhaps"
    }
  ]
}
)");
}

TEST(JsonReport, HasNoBytesThatAreNoUtf8) {
    Findings findings;
    findings.Ok("disk", "caf\xe9");
    EXPECT_NE(JsonReport({findings, {}}).Index('\xef'), -1);
    EXPECT_EQ(JsonReport({findings, {}}).Index('\xe9'), -1);
}

}  // namespace
