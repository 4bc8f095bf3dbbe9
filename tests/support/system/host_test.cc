#include "support/system/host.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <utility>

namespace {

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

}  // namespace
