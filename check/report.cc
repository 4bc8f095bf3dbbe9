// Writes a report; the only place that uses the JSON library.
#include "check/report.h"
#include "support/text/counted.h"

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

const char* Word(Grade grade) {
    switch (grade) {
        case Grade::Ok:
            return "ok";
        case Grade::Note:
            return "note";
        case Grade::Problem:
            break;
    }
    return "problem";
}

/// An answer that serves several findings stands below the first: it is a line of a file.
SString Lines(const Finding& finding, SStringList* answered) {
    constexpr size_t kGradeWidth = 9;
    const SString grade = Word(finding.grade);
    SString lines =
        grade + SString(' ', kGradeWidth - grade.Length()) + finding.about + ": " + finding.text + "\n";
    const SString indent(' ', kGradeWidth + 3);
    for (const SString& answer : finding.answers) {
        if (answered->Contains(answer)) continue;
        lines += indent + "answer: " + answer + "\n";
        answered->Push(answer);
    }
    for (const SString& task : finding.to_do) lines += indent + "do: " + task + "\n";
    return lines;
}

Json Text(const SString& text) {
    return text.Bytes();
}

Json Texts(const SStringList& texts) {
    Json list = Json::array();
    for (const SString& text : texts) list.push_back(Text(text));
    return list;
}

Json Object(const Finding& finding) {
    return {{"about", Text(finding.about)},      {"grade", Word(finding.grade)},
            {"looked_at", finding.is_looked_at}, {"text", Text(finding.text)},
            {"to_do", Texts(finding.to_do)},     {"answers", Texts(finding.answers)}};
}

SString Line(const ExpectedQuestion& expected) {
    SString line = "question " + expected.question;
    if (expected.default_answer) line += " [" + *expected.default_answer + "]";
    if (!expected.condition.IsEmpty()) line += ": " + expected.condition;
    return line + "\n";
}

Json Object(const ExpectedQuestion& expected) {
    return {{"question", Text(expected.question)},
            {"default", expected.default_answer ? Text(*expected.default_answer) : Json()},
            {"condition", expected.condition.IsEmpty() ? Json() : Text(expected.condition)}};
}

template <typename Element>
Json List(const std::vector<Element>& elements) {
    Json list = Json::array();
    for (const Element& element : elements) list.push_back(Object(element));
    return list;
}

}  // namespace

SString PlainReport(const Report& report) {
    SString text;
    SStringList answered;
    for (const Finding& finding : report.findings.All()) text += Lines(finding, &answered);
    for (const ExpectedQuestion& expected : report.questions) text += Line(expected);
    return text + Counted(report.findings.Count(Grade::Problem), "problem") + ", " +
           Counted(report.findings.Count(Grade::Note), "note") + ".\n";
}

SString JsonReport(const Report& report) {
    const Json document = {{"findings", List(report.findings.All())},
                           {"notes", report.findings.Count(Grade::Note)},
                           {"problems", report.findings.Count(Grade::Problem)},
                           {"questions", List(report.questions)}};
    return document.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}
