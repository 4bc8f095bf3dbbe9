// Collects findings, and packs them for the way between two processes.
#include "check/findings.h"

#include <algorithm>

#include "support/text/printable.h"

namespace {

void PushList(const SStringList& list, SStringList* message) {
    message->Push(list.Count());
    message->Push(list);
}

SStringList ShiftList(SStringList* message) {
    SStringList list;
    for (long left = message->Shift().ToNumber(); left > 0; --left) list.Push(message->Shift());
    return list;
}

}  // namespace

void Findings::Ok(const SString& about, const SString& text) {
    Take({about, Grade::Ok, true, text, {}, {}});
}

void Findings::Note(const SString& about, const SString& text, const SStringList& to_do,
                    const SStringList& answers) {
    Take({about, Grade::Note, true, text, to_do, answers});
}

void Findings::Problem(const SString& about, const SString& text, const SStringList& to_do,
                       const SStringList& answers) {
    Take({about, Grade::Problem, true, text, to_do, answers});
}

void Findings::NotLookedAt(const SString& about, const SString& reason) {
    Take({about, Grade::Note, false, "not looked at: " + reason, {}, {}});
}

void Findings::Add(const Findings& others) {
    findings_.insert(findings_.end(), others.findings_.begin(), others.findings_.end());
}

size_t Findings::Count(Grade grade) const {
    return static_cast<size_t>(std::ranges::count(findings_, grade, &Finding::grade));
}

void Findings::Take(Finding finding) {
    finding.text = Printable(finding.text);
    for (SString& line : finding.to_do) line = Printable(line);
    for (SString& line : finding.answers) line = Printable(line);
    findings_.push_back(std::move(finding));
}

SStringList ToMessage(const Findings& findings) {
    SStringList message;
    for (const Finding& finding : findings.All()) {
        message.Push(
            {finding.about, static_cast<int>(finding.grade), finding.is_looked_at ? "1" : "", finding.text});
        PushList(finding.to_do, &message);
        PushList(finding.answers, &message);
    }
    return message;
}

Findings FindingsFrom(SStringList message) {
    Findings findings;
    while (!message.IsEmpty()) {
        Finding finding;
        finding.about = message.Shift();
        finding.grade = static_cast<Grade>(message.Shift().ToNumber());
        finding.is_looked_at = !message.Shift().IsEmpty();
        finding.text = message.Shift();
        finding.to_do = ShiftList(&message);
        finding.answers = ShiftList(&message);
        findings.Take(std::move(finding));
    }
    return findings;
}
