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

/// The texts with one of these standings.
template <Standing... standings>
SStringList TextsOf(const std::vector<Planned>& plan) {
    SStringList texts;
    std::map<size_t, size_t> counts;
    for (const Planned& planned : plan) {
        if (((planned.finding.standing != standings) && ...)) continue;
        if (++counts[KindOf(*planned.entry)] <= kMostOfAKind) texts.Push(planned.finding.text);
    }
    for (const auto& [kind, count] : counts) {
        if (count > kMostOfAKind) texts.Push("and " + SString(count - kMostOfAKind) + " more like these");
    }
    return texts;
}

constexpr Section kSections[] = {
    {"This will be done, in this order:", TextsOf<Standing::AsLeft>},
    {"This stays:", TextsOf<Standing::Kept>},
    {"This is left to you:", TextsOf<Standing::ByHand>},
    {"This is left alone, as it is no longer as the run left it or cannot be told:",
     TextsOf<Standing::Changed, Standing::Unknown>},
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

bool LeavesAnything(const std::vector<Planned>& plan) {
    return HasAny(plan, {Standing::ByHand, Standing::Changed, Standing::Unknown});
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
