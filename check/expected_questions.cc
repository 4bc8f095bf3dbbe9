#include "check/expected_questions.h"

SStringList ToMessage(const std::vector<ExpectedQuestion>& questions) {
    SStringList message;
    for (const ExpectedQuestion& expected : questions) {
        message.Push({expected.question, expected.default_answer ? "1" : "",
                      expected.default_answer.value_or(""), expected.condition});
    }
    return message;
}

std::vector<ExpectedQuestion> QuestionsFrom(SStringList message) {
    std::vector<ExpectedQuestion> questions;
    while (!message.IsEmpty()) {
        ExpectedQuestion expected;
        expected.question = message.Shift();
        const bool has_default = !message.Shift().IsEmpty();
        const SString answer = message.Shift();
        if (has_default) expected.default_answer = answer;
        expected.condition = message.Shift();
        questions.push_back(std::move(expected));
    }
    return questions;
}
