#include "check/mail_system/question_list.h"

#include "answer/keys.h"
#include "support/text/printable.h"

namespace {

std::optional<SString> DefaultOf(QuestionId id) {
    const Question& question = QuestionOf(id);
    if (!ShowsDefault(question) || question.default_answer == nullptr) return std::nullopt;
    return SString(question.default_answer);
}

}  // namespace

void QuestionList::Add(QuestionId id) {
    Add(id, DefaultOf(id));
}

void QuestionList::Add(QuestionId id, const std::optional<SString>& default_answer) {
    ExpectedQuestion expected{KeyOf(QuestionOf(id)), default_answer, ""};
    if (default_answer) expected.default_answer = Printable(*default_answer);
    questions_.push_back(std::move(expected));
}

void QuestionList::AddPerhaps(QuestionId id, const SString& condition) {
    AddPerhaps(id, DefaultOf(id), condition);
}

void QuestionList::AddPerhaps(QuestionId id, const std::optional<SString>& default_answer,
                              const SString& condition) {
    Add(id, default_answer);
    questions_.back().condition = condition.IsEmpty() ? SString(QuestionOf(id).when) : condition;
}
