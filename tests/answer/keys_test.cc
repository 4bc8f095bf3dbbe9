#include "answer/keys.h"

#include <gtest/gtest.h>

namespace {

/// The keys of the questions that the key fits.
std::vector<std::string> Fitting(const SString& key) {
    std::vector<std::string> keys;
    for (const Question* question : QuestionsFor(key)) keys.push_back(KeyOf(*question).Bytes());
    return keys;
}

using Keys = std::vector<std::string>;

TEST(QuestionsFor, TakesTheBeginningOfAText) {
    EXPECT_EQ(Fitting("Which method?"), Keys{"Which method?"});
    EXPECT_EQ(Fitting("Which method? All/Passwd/None/Quit "), Keys{"Which method?"});
    EXPECT_EQ(Fitting("Which"), (Keys{"Which method?", "Which processes?"}));
    EXPECT_EQ(Fitting("Postmaster"), (Keys{"Postmaster password", "Postmasters"}));
    EXPECT_EQ(Fitting("Add"), Keys{"Add"});
    EXPECT_EQ(Fitting("method"), Keys{});
    EXPECT_EQ(Fitting("which method?"), Keys{});
    EXPECT_EQ(Fitting("Which method? All/Passwd/None/Quit [P]"), Keys{});
}

TEST(KeyOf, FitsItsQuestionAlone) {
    for (const Question& question : Questions()) {
        EXPECT_EQ(QuestionsFor(KeyOf(question)), std::vector<const Question*>{&question});
    }
}

TEST(QuestionAsked, IsTheWholeLastLine) {
    const struct {
        SString line;
        const Question* question;
    } cases[] = {
        {"Do you want to continue? yes/no/quit [yes] ", &QuestionOf(QuestionId::Continue)},
        {"Do you want to continue? yes/no/quit [yes]", nullptr},
        {"Do you want to continue? yes/no/quit ", nullptr},
        {"Do you want to continue? yes/no/quit [no] ", nullptr},
        {"Skipping Do you want to continue? yes/no/quit [yes] ", nullptr},
        {"Do you want to continue? yes/no/quit [yes] (system user)", nullptr},
        {"Which method? All/Passwd/None/Quit [N] ", &QuestionOf(QuestionId::AccountMethod)},
        {"Mail domains: [] ", &QuestionOf(QuestionId::MailDomains)},
        {"Mail domains: [a] b] ", &QuestionOf(QuestionId::MailDomains)},
        {"Mail domains: ", nullptr},
        {"Postmaster password: ", &QuestionOf(QuestionId::PostmasterPassword)},
        {"Postmaster password: x", nullptr},
        {"Add mail.example.com to the list? yes/no/quit [yes] ", &QuestionOf(QuestionId::AddHostName)},
        {"Add a to the list? yes/no/quit  to the list? yes/no/quit [yes] ",
         &QuestionOf(QuestionId::AddHostName)},
        {"Add mail.example.com to the list? yes/no/quit ", nullptr},
        {"", nullptr},
    };
    for (const auto& c : cases) EXPECT_EQ(QuestionAsked(c.line), c.question) << c.line;
}

TEST(DefaultShown, IsBetweenTheBrackets) {
    EXPECT_EQ(DefaultShown("Mail domains: [a,b] "), "a,b");
    EXPECT_EQ(DefaultShown("Access Domains: [] "), "");
    EXPECT_EQ(DefaultShown("Which processes? "), "");
}

TEST(QuestionsToFillIn, HasALineForEachQuestion) {
    const SString text = QuestionsToFillIn();
    for (const Question& question : Questions()) {
        EXPECT_NE(text.Bytes().find("\n#" + KeyOf(question).Bytes()), std::string::npos) << question.text;
    }
    EXPECT_NE(text.Bytes().find("\n# Add VALUE to the list? yes/no/quit\n"), std::string::npos);
    EXPECT_NE(text.Bytes().find("\n#Postmaster password < FILE\n"), std::string::npos);
}

}  // namespace
