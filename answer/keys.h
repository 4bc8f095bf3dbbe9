// The keys by which an answer file names questions: the beginning of a question's text.
//
//     Do you want the setgid bit set?
#pragma once

#include <vector>

#include "install/questions.h"
#include "support/text/sstring_list.h"

/// The questions whose text begins with the key.
std::vector<const Question*> QuestionsFor(const SString& key);
/// The text without the answers and the colon at its end: the key that reads best, and fits this question
/// alone.
SString KeyOf(const Question& question);
/// The line of an answer file that answers the question.
SString LineFor(const Question& question, const SString& answer);
/// The question that the last line on the screen asks; null where it asks none. The line must be the whole
/// prompt, its default included: a name or a path that holds a prompt's text is not taken for one.
const Question* QuestionAsked(const SString& line);
/// The default in such a line; empty where it shows none.
SString DefaultShown(const SString& line);
/// The file to be filled in: each question as it is shown, when it is asked, and its line, commented out.
SString QuestionsToFillIn();
