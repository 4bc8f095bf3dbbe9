// Writes a report; the only place that uses the JSON library.
#include "check/report.h"

#include "check/numerous.h"

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

SString Lines(const Finding& finding) {
    constexpr size_t kGradeWidth = 9;
    const SString grade = Word(finding.grade);
    SString lines =
        grade + SString(' ', kGradeWidth - grade.Length()) + finding.about + ": " + finding.text + "\n";
    for (const SString& task : finding.to_do) lines += SString(' ', kGradeWidth + 3) + "do: " + task + "\n";
    return lines;
}

Json Text(const SString& text) {
    return text.Bytes();
}

Json Object(const Finding& finding) {
    Json to_do = Json::array();
    for (const SString& task : finding.to_do) to_do.push_back(Text(task));
    return {{"about", Text(finding.about)},
            {"grade", Word(finding.grade)},
            {"looked_at", finding.is_looked_at},
            {"text", Text(finding.text)},
            {"to_do", std::move(to_do)}};
}

}  // namespace

SString PlainReport(const Findings& findings) {
    SString report;
    for (const Finding& finding : findings.All()) report += Lines(finding);
    return report + Counted(findings.Count(Grade::Problem), "problem") + ", " +
           Counted(findings.Count(Grade::Note), "note") + ".\n";
}

SString JsonReport(const Findings& findings) {
    Json list = Json::array();
    for (const Finding& finding : findings.All()) list.push_back(Object(finding));
    const Json document = {{"findings", std::move(list)},
                           {"notes", findings.Count(Grade::Note)},
                           {"problems", findings.Count(Grade::Problem)}};
    return document.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}
