#include "answer/answer_file.h"

#include <algorithm>

#include "answer/keys.h"
#include "answer/refusal.h"
#include "answer/text_file.h"
#include "support/text/printable.h"

namespace {

SString Trimmed(const SString& text) {
    return text.S("^[ \\t]+", "").S("[ \\t]+$", "");
}

/// A key copied from the screen may hold the host's own name, which the question does not begin with. What is
/// none may be a secret that stands in the wrong place: it is not shown.
SString UnknownKey(const SString& key) {
    for (const Question& question : Questions()) {
        const bool holds_value = !question.rest.empty() && key.StartsWith(question.text);
        if (holds_value) return "that question is named by \"" + KeyOf(question) + "\"";
    }
    return "no question begins with what stands before \"=\" or \"<\"";
}

SString KeyError(const SString& key, const std::vector<const Question*>& found) {
    if (found.empty()) return UnknownKey(key);
    SStringList fitting;
    for (const Question* question : found) fitting.Push("\"" + KeyOf(*question) + "\"");
    return "\"" + key + "\" fits more than one question: " + fitting.Join(", ");
}

class Reader {
  public:
    explicit Reader(const SString& path) : path_(path), source_(ReadTextFile(path)) {}

    AnswerFile Read() {
        if (!source_.error.IsEmpty()) file_.errors.Push(Printable(path_) + ": " + source_.error);
        source_.text = source_.text.S("^\xef\xbb\xbf", "");  // the byte order mark of some editors
        for (SString& line : Lines(source_.text)) {
            ++line_;
            ReadLine(line.ChopLineEnd());
        }
        return std::move(file_);
    }

  private:
    void ReadLine(const SString& line) {
        if (line.Matches("^(#|[ \\t]*$)")) return;
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
        if (path.IsEmpty()) return Complain("\"<\" needs a file after it");
        const TextFile source = ReadTextFile(FromHere(path));
        const SString shown = Printable(path);
        if (!source.error.IsEmpty()) return Complain(shown + ": " + source.error);
        if (!source.exposure.IsEmpty()) return Complain(shown + ": " + source.exposure);
        if (source.text.IsEmpty()) return Complain(shown + ": it is empty");
        Add(question, SString(Lines(source.text)[0]).ChopLineEnd());
    }

    /// A relative path begins where the file lies, wherever it is read.
    SString FromHere(const SString& path) const {
        return path.StartsWith("/") ? path : path_.S("[^/]*$", "") + path;
    }

    void Add(const Question& question, const SString& answer) {
        const SString refusal = Refusal(question, answer);
        if (!refusal.IsEmpty()) return Complain(refusal);
        file_.answers.push_back({&question, answer, line_});
        file_.without_default.insert(question.id);
    }

    void Complain(const SString& reason) {
        file_.errors.Push(Printable(path_) + ":" + SString(line_) + ": " + reason);
    }

    SString path_;
    TextFile source_;
    size_t line_ = 0;
    AnswerFile file_;
};

/// A line of text that is asked for again was refused or not confirmed: its default would be, too, for ever.
std::optional<SString> TakeDefault(AnswerFile* file, const Question& question) {
    if (!file->takes_defaults || file->without_default.contains(question.id)) return std::nullopt;
    if (question.kind == QuestionKind::Password) return std::nullopt;
    if (question.kind == QuestionKind::Line) file->without_default.insert(question.id);
    return "";
}

}  // namespace

AnswerFile ReadAnswerFile(const SString& path) {
    return Reader(path).Read();
}

std::optional<SString> TakeAnswer(AnswerFile* file, const Question& question) {
    const auto answer = std::ranges::find(file->answers, &question, &Answer::question);
    if (answer == file->answers.end()) return TakeDefault(file, question);
    SString text = answer->text;
    file->answers.erase(answer);
    return text;
}
