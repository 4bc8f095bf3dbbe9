// A file of answers, each named by the beginning of its question's text:
//
//     # the usual site
//     Which method? = p
//     Postmaster password < /root/postmaster
//     * = default
//
// "<" takes the first line of a file. "#" begins a comment only at a line's beginning. An empty answer is
// Return. A line answers once; the defaults are for questions without any line. A password, here or in its
// file, must be root's alone.
#pragma once

#include <deque>
#include <optional>
#include <set>

#include "install/questions.h"
#include "support/text/sstring_list.h"

struct Answer {
    const Question* question;
    SString text;
    size_t line;
};

struct AnswerFile {
    std::deque<Answer> answers;
    bool takes_defaults = false;           // "* = default"
    std::set<QuestionId> without_default;  // had a line, or a default that was refused: these need a line
    SStringList errors;  // "FILE:LINE: reason"; the answers are of no use where there are any
};

AnswerFile ReadAnswerFile(const SString& path);

/// Takes the first answer to the question out of the file; Return for one that never had any, where the file
/// says so and the question has a default. Nothing if there is no answer.
std::optional<SString> TakeAnswer(AnswerFile* file, const Question& question);
