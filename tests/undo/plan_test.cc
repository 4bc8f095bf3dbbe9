#include "undo/plan.h"

#include <gtest/gtest.h>

#include "tests/dialogue.h"

namespace {

SString Shown(const std::vector<Planned>& plan) {
    const Dialogue dialogue;
    ShowPlan(plan);
    return dialogue.Screen();
}

SString Repeated(const SString& line, int times) {
    SString lines;
    for (int i = 0; i < times; ++i) lines += line;
    return lines;
}

TEST(ShowPlan, TellsOfWhatThereAreMoreRightAfterIt) {
    const Entry mode{2, "", change::ModeSet()};
    const Entry link{3, "", change::LinkMade()};
    std::vector<Planned> plan(22, Planned{&mode, {Standing::AsLeft, "mode"}});
    plan.push_back({&link, {Standing::AsLeft, "link"}});
    EXPECT_EQ(Shown(plan), "This will be done, in this order:\n" + Repeated("    mode\n", 20) +
                               "    and 2 more like these\n    link\n\n");
}

TEST(ShowPlan, TellsWhatIsLeftOfWhatWillBeDone) {
    const Entry signal{2, "", change::ProcessesSignalled()};
    const std::vector<Planned> plan{
        {&signal, {Standing::AsLeft, "Start a.service", {"qpopper is to be started", "so is exim4"}}}};
    EXPECT_TRUE(HasWork(plan));
    EXPECT_TRUE(LeavesAnything(plan));
    EXPECT_EQ(Shown(plan),
              "This will be done, in this order:\n    Start a.service\n\n"
              "This is left to you:\n    qpopper is to be started\n    so is exim4\n\n");
}

}  // namespace
