// Makes the list of expected questions from the table of all.
#pragma once

#include "check/expected_questions.h"
#include "install/questions.h"

class QuestionList {
  public:
    /// It will be asked, with the table's default.
    void Add(QuestionId id);
    void Add(QuestionId id, const std::optional<SString>& default_answer);
    /// It may be asked; without a condition of its own, when the table says.
    void AddPerhaps(QuestionId id, const SString& condition = "");
    void AddPerhaps(QuestionId id, const std::optional<SString>& default_answer, const SString& condition);
    std::vector<ExpectedQuestion> Take() { return std::move(questions_); }

  private:
    std::vector<ExpectedQuestion> questions_;
};
