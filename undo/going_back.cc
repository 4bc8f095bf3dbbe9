#include "undo/going_back.h"

#include "install/console.h"
#include "install/critical_section.h"

namespace {

const char* WordFor(Standing standing) {
    switch (standing) {
        case Standing::AsBefore:
            return "as before";
        case Standing::AsLeft:
            return kTakenBack;
        case Standing::Kept:
            return "kept";
        case Standing::ByHand:
            return "left to the administrator";
        case Standing::Changed:
            return "changed since";
        case Standing::Later:
            return "changed again by a later run";
        case Standing::Unknown:
            break;
    }
    return "unknown";
}

/// Another time it may stand otherwise, though nobody has touched it.
bool MayChange(Standing standing) {
    return standing == Standing::Later || standing == Standing::Unknown;
}

bool IsLeft(Standing standing) {
    return standing == Standing::ByHand || standing == Standing::Changed || MayChange(standing);
}

TakenBack Take(const Entry& entry, const UndoneRun& run, const Finding& finding) {
    BeginProgress(finding.text);
    TakenBack taken = TakeBack(entry, run);
    EndProgress(taken.is_whole ? "done" : "failed");
    return taken;
}

void GoBackOver(const Entry& entry, const UndoneRun& run, UndoneRecord* record, Outcome* outcome) {
    const CriticalSection section;
    const Finding finding = LookAt(entry, run);
    TakenBack taken;
    if (finding.standing == Standing::AsLeft) taken = Take(entry, run, finding);
    if (IsLeft(finding.standing)) taken.left.Push(finding.text);
    record->Add(entry.line, taken.is_whole ? WordFor(finding.standing) : "failed", taken.left);
    outcome->is_whole = outcome->is_whole && taken.is_whole;
    outcome->is_known = outcome->is_known && !MayChange(finding.standing);
    outcome->left.Push(taken.left);
}

}  // namespace

Outcome GoBack(const std::vector<Entry>& entries, const UndoneRun& run, UndoneRecord* record) {
    Outcome outcome;
    record->Begin(run.options);
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        GoBackOver(*entry, run, record, &outcome);
        // After the last change there is nothing to interrupt.
        outcome.is_interrupted = CriticalSection::WasInterrupted() && std::next(entry) != entries.rend();
        if (outcome.is_interrupted) return outcome;
    }
    if (outcome.is_whole && outcome.is_known) record->Finish(run.options, !outcome.left.IsEmpty());
    return outcome;
}
