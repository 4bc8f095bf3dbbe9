#include "install/questions.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "install/console.h"
#include "install/sequence.h"
#include "tests/dialogue.h"

namespace {

TEST(Questions, AreFoundByTheirName) {
    for (const Question& question : Questions()) EXPECT_EQ(&QuestionOf(question.id), &question);
    EXPECT_EQ(QuestionOf(QuestionId::UpdateServices).step, "AddServices");
}

TEST(Questions, DoNotBeginWithEachOther) {
    for (const Question& question : Questions()) {
        for (const Question& other : Questions()) {
            if (&question == &other) continue;
            EXPECT_FALSE(question.text.starts_with(other.text)) << question.text;
        }
    }
}

TEST(Questions, AreThoseOfTheSequenceInItsOrder) {
    const auto place = [](std::string_view step) {
        return std::ranges::find(Sequence(), step, &Step::name) - Sequence().begin();
    };
    long last = 0;
    for (const Question& question : Questions()) {
        if (question.step.empty()) continue;
        EXPECT_LT(place(question.step), std::ssize(Sequence())) << question.text;
        EXPECT_GE(place(question.step), last) << question.text;
        last = place(question.step);
    }
}

TEST(Questions, NameTheirAnswersInTheirText) {
    for (const Question& question : Questions()) {
        const SString text(std::string(question.text) + std::string(question.rest));
        EXPECT_EQ(text.Matches("yes/no/quit |'quit'"), question.kind == QuestionKind::YesNoQuit) << text;
        EXPECT_EQ(text.EndsWith("yes/no "), question.kind == QuestionKind::YesNo) << text;
    }
}

TEST(Ask, ShowsTheTablesTextAndDefault) {
    const struct {
        QuestionId id;
        SString screen;
    } cases[] = {
        {QuestionId::KillSendmail, "Kill sendmail daemon process? yes/no/quit [yes] \n"},
        {QuestionId::StartAnyway, "Do you want to try to start the system anyway? yes/no/quit [no] \n"},
    };
    for (const auto& c : cases) {
        const Dialogue dialogue("\n");
        Ask(c.id);
        EXPECT_EQ(dialogue.Screen(), c.screen);
    }
}

TEST(AskAbout, ShowsTheValueWithoutControlCharacters) {
    const Dialogue dialogue("Quit\n");
    EXPECT_EQ(AskAbout(QuestionId::AddHostName,
                       "a\x1b"
                       "b"),
              'q');
    EXPECT_EQ(dialogue.Screen(), "Add a?b to the list? yes/no/quit [yes] \n");
}

TEST(AskLine, ShowsADefaultWhereReturnTakesOne) {
    const struct {
        QuestionId id;
        SString screen;
    } cases[] = {
        {QuestionId::MailDomains, "Mail domains: [default] \n"},
        {QuestionId::PostmasterPassword, "Postmaster password: \n"},
        {QuestionId::WhichProcesses, "Which processes? \n"},
    };
    for (const auto& c : cases) {
        const Dialogue dialogue("two words\n");
        EXPECT_EQ(AskLine(c.id, "default"), "two words");
        EXPECT_EQ(dialogue.Screen(), c.screen);
    }
}

}  // namespace
