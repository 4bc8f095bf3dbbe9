#include "install/read_config.h"

#include <gtest/gtest.h>

namespace {

TEST(ReadConfig, GivesTheValueOfAKey) {
    const struct {
        SStringList lines;
        SString value;
    } cases[] = {
        {{"DomainName=example.com"}, "example.com"},
        {{"# DomainName=x", "", "Other=y", "DomainName=example.com"}, "example.com"},
        {{"DomainName=a.b c"}, "a.b"},
        {{"DomainName=a.b\tc"}, "a.b"},
        {{"DomainName=a=b"}, "a=b"},
        {{"DomainName=first", "DomainName=second"}, "first"},
        {{}, ""},
        {{""}, ""},
        {{"DomainName="}, ""},
        {{"DomainName"}, ""},
        {{"DomainName = a.b"}, ""},
        {{"DomainName= a.b"}, ""},
        {{" DomainName=a.b"}, ""},
        {{"domainname=a.b"}, ""},
        {{"DomainNameOld=a.b", "DomainName=c.d"}, ""},
        {{"DomainName=a.b\r"}, "a.b"},
        {{"DomainName=a" + SString('\0', 1) + "b"}, ""},
        {{"DomainName=" + SString('\0', 1)}, ""},
    };
    for (const auto& c : cases) EXPECT_EQ(ReadConfig(c.lines, "DomainName"), c.value) << c.lines.Join("|");
}

TEST(ReadConfig, TakesALineOfTenMegabytes) {
    const SString value('x', 10000000);
    const SStringList lines{SString(' ', 10000000) + "DomainName=a", "DomainName=" + value};
    EXPECT_TRUE(ReadConfig(lines, "DomainName") == value);
}

}  // namespace
