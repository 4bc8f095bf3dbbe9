// The questions that the next run will ask, in their order.
#pragma once

#include <optional>
#include <vector>

#include "support/text/sstring_list.h"

struct ExpectedQuestion {
    SString question;                       // as an answer file names it
    std::optional<SString> default_answer;  // none where it has none, or it depends on other answers
    SString condition;                      // when it is asked; empty: it will be

    bool operator==(const ExpectedQuestion&) const = default;
};

/// As a list of strings of any bytes, and back, to be sent by a child process.
SStringList ToMessage(const std::vector<ExpectedQuestion>& questions);
std::vector<ExpectedQuestion> QuestionsFrom(SStringList message);
