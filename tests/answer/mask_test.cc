#include "answer/mask.h"

#include <gtest/gtest.h>

namespace {

TEST(Mask, HidesTheSecretWhereverAReadEnds) {
    const std::string text = "one seseseseecret, two secretsecret, secre";
    for (size_t cut = 0; cut <= text.size(); ++cut) {
        for (size_t second = cut; second <= text.size(); ++second) {
            Mask mask;
            mask.Hide("secret");
            SString shown = mask.Pass(text.substr(0, cut));
            shown += mask.Pass(text.substr(cut, second - cut));
            shown += mask.Pass(text.substr(second));
            shown += mask.Rest();
            EXPECT_EQ(shown, "one seseseseecret, two ****************, secre") << cut << " " << second;
        }
    }
}

TEST(Mask, PassesAllWhileThereIsNoSecret) {
    Mask mask;
    EXPECT_EQ(mask.Pass("anything"), "anything");
    EXPECT_EQ(mask.Rest(), "");
}

TEST(Mask, KeepsBackWhatMayBeTheBeginning) {
    Mask mask;
    mask.Hide("secret");
    EXPECT_EQ(mask.Pass("a sec"), "a ");
    EXPECT_EQ(mask.Pass("tion"), "section");
    EXPECT_EQ(mask.Pass("secre"), "");
    EXPECT_EQ(mask.Rest(), "secre");
    EXPECT_EQ(mask.Rest(), "");
}

}  // namespace
