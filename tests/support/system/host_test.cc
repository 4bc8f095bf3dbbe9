#include "support/system/host.h"
#include "support/system/clock.h"
#include "support/system/environment.h"
#include "support/system/random.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <set>
#include <utility>

namespace {

TEST(GetEnv, ReadsWhatPutEnvSets) {
    unsetenv("InstallTest");
    EXPECT_EQ(GetEnv("InstallTest"), "");
    PutEnv("InstallTest", "one");
    EXPECT_EQ(GetEnv("InstallTest"), "one");
    PutEnv("InstallTest", "a=b c");
    EXPECT_EQ(GetEnv("InstallTest"), "a=b c");
    PutEnv("InstallTest", "");
    EXPECT_EQ(GetEnv("InstallTest"), "");
    unsetenv("InstallTest");
}

TEST(NodeName, IsTheKernels) {
    char name[256] = "";
    ASSERT_EQ(gethostname(name, sizeof name - 1), 0);
    EXPECT_EQ(NodeName(), name);
}

TEST(GetHostByName, GivesAddresses) {
    EXPECT_EQ(GetHostByName("127.0.0.1"), SStringList("127.0.0.1"));
    EXPECT_TRUE(GetHostByName("").IsEmpty());
    EXPECT_TRUE(GetHostByName("::1").IsEmpty());
}

TEST(IsValidDomain, FollowsTheHostNameSyntax) {
    const SString label63('a', 63);
    const SString domain253 = label63 + "." + label63 + "." + label63 + "." + SString('b', 61);
    const std::pair<SString, bool> cases[] = {
        {"example.com", true},
        {"localhost", true},
        {"x", true},
        {"3com.example", true},
        {"a-b.c--d.EXAMPLE", true},
        {"1.2.3.4a", true},
        {label63 + ".example", true},
        {domain253, true},
        {"", false},
        {".", false},
        {"example.", false},
        {".example", false},
        {"a..b", false},
        {"-a.example", false},
        {"a-.example", false},
        {"a_b.example", false},
        {"a b", false},
        {"example.com\n", false},
        {SString(std::string("a\0b", 3)), false},
        {"b\xc3\xbc"
         "cher.example",
         false},
        {"1.2.3.4", false},
        {"example.42", false},
        {"42", false},
        {"a" + label63 + ".example", false},
        {domain253 + "b", false},
    };
    for (const auto& [name, valid] : cases) EXPECT_EQ(IsValidDomain(name), valid) << name;
}

TEST(RFC822Date, HasTheStandardsForm) {
    EXPECT_TRUE(
        RFC822Date().Matches("^(Mon|Tue|Wed|Thu|Fri|Sat|Sun), \\d\\d "
                             "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) \\d{4} "
                             "\\d\\d:\\d\\d:\\d\\d [+-]\\d{4}\\z"))
        << RFC822Date();
}

TEST(MessageIdDate, IsNeverTheSameTwice) {
    SString before;
    for (int i = 0; i < 1000; ++i) {
        const SString now = MessageIdDate();
        EXPECT_TRUE(now.Matches("^\\d{20}\\z")) << now;
        EXPECT_LT(before, now);
        before = now;
    }
}

TEST(ProcessIdString, IsDecimal) {
    EXPECT_EQ(ProcessIdString(), SString(std::to_string(getpid())));
}

TEST(RandomInt, DrawsEveryValueOfItsRange) {
    std::set<int> drawn;
    for (int i = 0; i < 10'000; ++i) drawn.insert(RandomInt(9));
    EXPECT_EQ(drawn, (std::set<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(RandomInt(1), 0);
}

}  // namespace
