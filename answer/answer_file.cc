#include "answer/answer_file.h"

#include <algorithm>

#include "answer/keys.h"
#include "answer/text_file.h"
#include "install/postmaster/dialogue.h"
#include "support/text/printable.h"

namespace {

SString Trimmed(const SString& text) {
    return text.S("^[ \\t]+", "").S("[ \\t]+$", "");
}

/// The letters that a question with a choice takes; none for a line of text.
SString Letters(const Question& question) {
    if (question.kind == QuestionKind::YesNoQuit) return "ynq";
    if (question.kind == QuestionKind::YesNo) return "yn";
    if (question.kind != QuestionKind::Choice) return "";
    SString letters;
    for (const SString& word : SString(question.text).M("(\\w+(?:/\\w+)+) $").Get(0).Split('/')) {
        letters += SString(word).LowerCase()[0];
    }
    return letters;
}

/// Why the question would not take the answer; empty if it would. Never shows a password.
SString Refusal(const Question& question, const SString& answer) {
    if (Printable(answer, "\t") != answer) return "the answer holds a control character";
    if (question.kind == QuestionKind::Password) {
        return IsGoodPassword(answer)
                   ? ""
                   : "a password has at least 6 characters and does not begin with a blank";
    }
    const SString letters = Letters(question);
    if (answer.IsEmpty() || letters.IsEmpty() || letters.Index(SString(answer).LowerCase()[0]) >= 0)
        return "";
    return "\"" + answer + "\" is no answer to \"" + KeyOf(question) + "\"";
}

/// A key copied from the screen may hold the host's own name, which the question does not begin with.
SString UnknownKey(const SString& key) {
    for (const Question& question : Questions()) {
        const bool holds_value = !question.rest.empty() && key.StartsWith(question.text);
        if (holds_value)
            return "the question \"" + Printable(key) + "\" is named by \"" + KeyOf(question) + "\"";
    }
    return "no question begins with \"" + Printable(key) + "\"";
}

SString KeyError(const SString& key, const std::vector<const Question*>& found) {
    if (found.empty()) return UnknownKey(key);
    SStringList fitting;
    for (const Question* question : found) fitting.Push("\"" + KeyOf(*question) + "\"");
    return "\"" + Printable(key) + "\" fits more than one question: " + fitting.Join(", ");
}

class Reader {
  public:
    explicit Reader(const SString& path) : path_(path), source_(ReadTextFile(path)) {}

    AnswerFile Read() {
        if (!source_.error.IsEmpty()) file_.errors.Push(path_ + ": " + source_.error);
        for (SString& line : Lines(source_.text)) {
            ++line_;
            ReadLine(line.ChopLineEnd());
        }
        return std::move(file_);
    }

  private:
    void ReadLine(const SString& line) {
        if (line.Matches("^[ \\t]*(#|$)")) return;
        const SStringList parts = line.M("^([^=<]*)([=<])(.*)$");
        const SString key = Trimmed(parts.Get(0));
        const bool is_from_file = parts.Get(1) == "<";
        const SString value = Trimmed(parts.Get(2));
        if (key.IsEmpty()) return Complain("neither \"QUESTION = ANSWER\" nor \"QUESTION < FILE\"");
        if (key == "*") return ReadDefaults(!is_from_file && value == "default");
        const auto found = QuestionsFor(key);
        if (found.size() != 1) return Complain(KeyError(key, found));
        is_from_file ? AddFirstLine(*found[0], value) : AddTyped(*found[0], value);
    }

    void ReadDefaults(bool is_well_formed) {
        if (!is_well_formed) return Complain("\"*\" stands for nothing but \"* = default\"");
        file_.takes_defaults = true;
    }

    void AddTyped(const Question& question, const SString& answer) {
        if (question.kind == QuestionKind::Password && !source_.exposure.IsEmpty()) {
            return Complain("the file holds a password, but " + source_.exposure);
        }
        Add(question, answer);
    }

    void AddFirstLine(const Question& question, const SString& path) {
        const TextFile source = ReadTextFile(path);
        if (!source.error.IsEmpty()) return Complain(path + ": " + source.error);
        if (!source.exposure.IsEmpty()) return Complain(path + ": " + source.exposure);
        if (source.text.IsEmpty()) return Complain(path + ": it is empty");
        Add(question, SString(Lines(source.text)[0]).ChopLineEnd());
    }

    void Add(const Question& question, const SString& answer) {
        const SString refusal = Refusal(question, answer);
        if (!refusal.IsEmpty()) return Complain(refusal);
        file_.answers.push_back({&question, answer, line_});
    }

    void Complain(const SString& reason) { file_.errors.Push(path_ + ":" + SString(line_) + ": " + reason); }

    SString path_;
    TextFile source_;
    size_t line_ = 0;
    AnswerFile file_;
};

}  // namespace

AnswerFile ReadAnswerFile(const SString& path) {
    return Reader(path).Read();
}

std::optional<SString> TakeAnswer(AnswerFile* file, const Question& question) {
    const auto answer = std::ranges::find(file->answers, &question, &Answer::question);
    if (answer == file->answers.end()) {
        const bool has_default = file->takes_defaults && question.kind != QuestionKind::Password;
        return has_default ? std::optional<SString>("") : std::nullopt;
    }
    SString text = answer->text;
    file->answers.erase(answer);
    return text;
}
