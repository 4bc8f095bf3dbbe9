#include "answer/keys.h"

#include <algorithm>

namespace {

/// After the question's text: the value, where there is one, and the rest.
bool HasItsText(const Question& question, std::string_view* line) {
    if (!line->starts_with(question.text)) return false;
    line->remove_prefix(question.text.size());
    if (question.rest.empty()) return true;
    const size_t rest = line->rfind(question.rest);
    if (rest == std::string_view::npos) return false;
    line->remove_prefix(rest + question.rest.size());
    return true;
}

bool IsAsked(const Question& question, std::string_view line) {
    if (!HasItsText(question, &line)) return false;
    if (!ShowsDefault(question)) return line.empty();
    if (question.default_answer == nullptr) return line.starts_with("[") && line.ends_with("] ");
    return SString(line) == "[" + SString(question.default_answer) + "] ";
}

/// As it is shown, with VALUE for what the host puts in.
SString Prompt(const Question& question) {
    SString prompt(question.text);
    if (!question.rest.empty()) prompt += "VALUE" + SString(question.rest);
    return prompt.S(" $", "");
}

}  // namespace

std::vector<const Question*> QuestionsFor(const SString& key) {
    std::vector<const Question*> found;
    for (const Question& question : Questions()) {
        if (question.text.starts_with(key.Bytes())) found.push_back(&question);
    }
    return found;
}

SString KeyOf(const Question& question) {
    return SString(question.text).S("( \\w+(/\\w+)+)? $", "").S(":$", "");
}

SString LineFor(const Question& question, const SString& answer) {
    if (question.kind == QuestionKind::Password) return KeyOf(question) + " < FILE";
    return KeyOf(question) + " = " + answer;
}

const Question* QuestionAsked(const SString& line) {
    const auto questions = Questions();
    const auto asked = std::ranges::find_if(
        questions, [&](const Question& question) { return IsAsked(question, line.Bytes()); });
    return asked == questions.end() ? nullptr : &*asked;
}

SString DefaultShown(const SString& line) {
    return line.M("^[^[]*\\[(.*)\\] $").Get(0);
}

SString QuestionsToFillIn() {
    SString text =
        "# The questions that Install can ask, in their order. Take the \"#\" away before those that shall be\n"
        "# answered, and put the answer in; an empty one is Return, which takes the default. A question that\n"
        "# is asked again needs a line again. Those without an answer get their default only with this line:\n"
        "#* = default\n";
    for (const Question& question : Questions()) {
        text += "\n# " + Prompt(question) + "\n#   asked " + SString(question.when) + "\n#" +
                LineFor(question, SString(question.default_answer)) + "\n";
    }
    return text;
}
