// run_steps STEP...
//
// Starts up like Install, but runs only the named steps, in the order given, until one stops the
// installation. Screens and exit status are Install's.
#include <algorithm>
#include <iostream>
#include <iterator>
#include <vector>

#include "install/record/record.h"
#include "install/sequence.h"
#include "install/start_up.h"
#include "install/steps.h"
#include "support/text/sstring.h"

namespace {

constexpr int kComplete = 0;
constexpr int kStopped = 2;
constexpr int kMisused = 64;

std::vector<Step> AllSteps() {
    std::vector<Step> steps(Sequence().begin(), Sequence().end());
    steps.push_back({"AddServices", AddServices});
    return steps;
}

/// The steps with these names; fewer if a name is unknown.
std::vector<Step> Named(const std::vector<SString>& names) {
    const std::vector<Step> all = AllSteps();
    std::vector<Step> steps;
    for (const SString& name : names) {
        std::ranges::copy_if(all, std::back_inserter(steps),
                             [&](const Step& step) { return name == step.name; });
    }
    return steps;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<SString> names(argv + 1, argv + argc);
    const std::vector<Step> steps = Named(names);
    if (names.empty() || steps.size() != names.size()) {
        std::cerr << "run_steps: of the names given, only " << steps.size() << " are steps\n";
        return kMisused;
    }
    if (!StartUp() || !Initialize()) return kStopped;
    const bool is_complete = std::ranges::all_of(steps, [](const Step& step) { return step.run(); });
    EndRecord(is_complete ? kComplete : kStopped);
    return is_complete ? kComplete : kStopped;
}
