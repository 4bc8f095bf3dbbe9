#include "undo/plan.h"

#include <algorithm>
#include <map>

#include "install/console.h"

namespace {

constexpr size_t kMostOfAKind = 20;
constexpr long kIndent = 4;

struct Section {
    const char* heading;
    SStringList (*texts)(const std::vector<Planned>& plan);
};

struct Text {
    size_t kind;
    SString text;
};

/// What is to be said of an entry under one of these standings.
template <Standing... standings>
SStringList LinesOf(const Finding& finding) {
    if (((standings == Standing::ByHand) || ...)) return finding.by_hand;
    return ((finding.standing == standings) || ...) ? finding.text : SStringList();
}

/// Of each kind the first ones, and right after them how many more there are.
SStringList Shortened(const std::vector<Text>& texts) {
    std::map<size_t, size_t> counts;
    for (const Text& text : texts) ++counts[text.kind];
    std::map<size_t, size_t> shown;
    SStringList shortened;
    for (const auto& [kind, text] : texts) {
        const size_t number = ++shown[kind];
        if (number <= kMostOfAKind) shortened.Push(text);
        if (number == kMostOfAKind && counts[kind] > kMostOfAKind)
            shortened.Push("and " + SString(counts[kind] - kMostOfAKind) + " more like these");
    }
    return shortened;
}

template <Standing... standings>
SStringList TextsOf(const std::vector<Planned>& plan) {
    std::vector<Text> texts;
    for (const Planned& planned : plan) {
        for (const SString& line : LinesOf<standings...>(planned.finding))
            texts.push_back({KindOf(*planned.entry), line});
    }
    return Shortened(texts);
}

constexpr Section kSections[] = {
    {"This will be done, in this order:", TextsOf<Standing::AsLeft>},
    {"This stays:", TextsOf<Standing::Kept>},
    {"This is left to you:", TextsOf<Standing::ByHand>},
    {"This is left alone, as it is no longer as the run left it or cannot be told:",
     TextsOf<Standing::Changed, Standing::Later, Standing::Unknown>},
};

bool HasAny(const std::vector<Planned>& plan, std::initializer_list<Standing> standings) {
    return std::ranges::any_of(plan, [&](const Planned& planned) {
        return std::ranges::find(standings, planned.finding.standing) != standings.end();
    });
}

}  // namespace

std::vector<Planned> PlanFor(const std::vector<Entry>& entries, const UndoneRun& run) {
    std::vector<Planned> plan;
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        Finding finding = LookAt(*entry, run);
        if (finding.standing != Standing::AsBefore) plan.push_back({&*entry, std::move(finding)});
    }
    return plan;
}

bool HasWork(const std::vector<Planned>& plan) {
    return HasAny(plan, {Standing::AsLeft});
}

bool IsFinal(const std::vector<Planned>& plan) {
    return !HasAny(plan, {Standing::Later, Standing::Unknown});
}

bool LeavesAnything(const std::vector<Planned>& plan) {
    return HasAny(plan, {Standing::ByHand, Standing::Changed, Standing::Later, Standing::Unknown}) ||
           std::ranges::any_of(plan,
                               [](const Planned& planned) { return !planned.finding.by_hand.IsEmpty(); });
}

void ShowPlan(const std::vector<Planned>& plan) {
    for (const Section& section : kSections) {
        const SStringList texts = section.texts(plan);
        if (texts.IsEmpty()) continue;
        PrintParagraph(section.heading);
        PrintIndented(kIndent, texts);
        Print("\n");
    }
}
