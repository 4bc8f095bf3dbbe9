#include "undo/going_back.h"

#include "install/console.h"
#include "install/critical_section.h"

namespace {

const char* WordFor(Standing standing) {
    switch (standing) {
        case Standing::AsBefore:
            return kAsBefore;
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

/// How an attempt ended; that it succeeded is said in other words on the screen and in the record.
const char* EndOf(const TakenBack& taken, const char* success) {
    if (taken.is_interrupted) return "interrupted";
    return taken.is_whole ? success : "failed";
}

TakenBack Take(const Entry& entry, const UndoneRun& run, const Finding& finding) {
    BeginProgress(finding.text);
    TakenBack taken = TakeBack(entry, run);
    EndProgress(EndOf(taken, "done"));
    return taken;
}

/// A signal waits for the change at hand; after the last one there is nothing to interrupt.
void GoBackOver(const Entry& entry, bool is_last, const UndoneRun& run, UndoneRecord* record,
                Outcome* outcome) {
    const CriticalSection section;
    const Finding finding = LookAt(entry, run);
    TakenBack taken;
    if (finding.standing == Standing::AsLeft) taken = Take(entry, run, finding);
    taken.left.Push(LeftOf(finding));
    record->Add(entry.line, EndOf(taken, WordFor(finding.standing)), taken.left);
    outcome->is_whole = outcome->is_whole && taken.is_whole;
    outcome->is_known = outcome->is_known && taken.is_known && !MayChange(finding.standing);
    outcome->left.Push(taken.left);
    outcome->is_interrupted = taken.is_interrupted || (CriticalSection::WasInterrupted() && !is_last);
}

}  // namespace

Outcome GoBack(const std::vector<Entry>& entries, const UndoneRun& run, UndoneRecord* record) {
    Outcome outcome;
    record->Begin(run.options);
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        GoBackOver(*entry, std::next(entry) == entries.rend(), run, record, &outcome);
        if (outcome.is_interrupted) return outcome;
    }
    if (outcome.is_whole && outcome.is_known) record->Finish(run.options, !outcome.left.IsEmpty());
    return outcome;
}
