#include <gtest/gtest.h>

#include "support/mail/address.h"

namespace {

TEST(S822Parser, SplitsLists) {
    const struct {
        SString list;
        SStringList addresses;
    } cases[] = {
        {"", {}},
        {"  \t\r\n", {}},
        {",", {}},
        {",, ,", {}},
        {"user@example.com", {"user@example.com"}},
        {"user", {"user"}},
        {" one@example.com , two@example.com ", {"one@example.com", "two@example.com"}},
        {",one@example.com,,two@example.com,", {"one@example.com", "two@example.com"}},
        {"one@example.com;two@example.com", {"one@example.com", "two@example.com"}},
        {"Joe User <joe@example.com>, ann", {"joe@example.com", "ann"}},
        {"<joe@example.com>", {"joe@example.com"}},
        {"\"User, Joe\" <joe@example.com>", {"joe@example.com"}},
        {"John Q. Public <jqp@example.com>", {"jqp@example.com"}},
        {"\"<odd@name.example>\" <joe@example.com>", {"joe@example.com"}},
        {"\"Joe\\\\\" <joe@example.com>, ann", {"joe@example.com", "ann"}},    // a backslash, then the end
        {"\"\\\", Joe\" <joe@example.com>, ann", {"joe@example.com", "ann"}},  // a quote inside
        {"joe@example.com (Joe, the (other) User \\) )", {"joe@example.com"}},
        {"(Joe) joe (at) @ (the) example . com", {"joe@example.com"}},
        {"joe . user @ example.com", {"joe.user@example.com"}},
        {"<@one.example,@two.example:joe@example.com>, ann", {"joe@example.com", "ann"}},
        {"\"joe, user\"@example.com, ann", {"\"joe, user\"@example.com", "ann"}},
        {"friends: one@example.com, Two <two@example.com>;, three@example.com",
         {"one@example.com", "two@example.com", "three@example.com"}},
        {"nobody:;", {}},
        {"one@example.com, nobody:;, two@example.com", {"one@example.com", "two@example.com"}},
        {"\"my friends\": one@example.com", {"one@example.com"}},
        {"joe@[192.0.2.1], ann@[IPv6:2001:db8::1]", {"joe@[192.0.2.1]", "ann@[IPv6:2001:db8::1]"}},
        {"<>", {"<>"}},
        {"Nobody <>, ann", {"<>", "ann"}},
        {"one@example.com,\r\n two@example.com", {"one@example.com", "two@example.com"}},
    };
    for (const auto& c : cases) EXPECT_EQ(S822Parser(c.list).Addresses(), c.addresses) << c.list;
}

TEST(S822Parser, GivesWhatIsNoAddressAsTyped) {
    const struct {
        SString list;
        SStringList addresses;
    } cases[] = {
        {"joe user", {"joe user"}},
        {" joe  user , ann", {"joe  user", "ann"}},
        {"joe@example.com ann@example.com", {"joe@example.com ann@example.com"}},
        {"joe@, @example.com", {"joe@", "@example.com"}},
        {"joe <ann, bob@example.com", {"joe <ann, bob@example.com"}},
        {"<a@example.com><b@example.com>", {"<a@example.com><b@example.com>"}},
        {"<a@example.com> x, ann", {"<a@example.com> x", "ann"}},
        {"\"open, ann", {"\"open, ann"}},
        {"open\\", {"open\\"}},
        {"(a comment alone), ann", {"(a comment alone)", "ann"}},
        {"(never closed, ann", {"(never closed, ann"}},
        {"joe) , ann", {"joe)", "ann"}},
        {"joe@[192.0.2.1, ann", {"joe@[192.0.2.1, ann"}},
        {"j\xc3\xb6rg@example.com", {"j\xc3\xb6rg@example.com"}},
    };
    for (const auto& c : cases) EXPECT_EQ(S822Parser(c.list).Addresses(), c.addresses) << c.list;
}

TEST(S822Parser, ReadsALongListInOneGo) {
    std::string list;
    for (int i = 0; i < 50000; ++i) list += "user@example.com, ";
    EXPECT_EQ(S822Parser(SString(list)).Addresses().Count(), 50000U);
    EXPECT_EQ(S822Parser(SString('(', 1000000)).Addresses().Count(), 1U);
    EXPECT_EQ(S822Parser(SString('<', 200000)).Addresses().Count(), 1U);
}

}  // namespace
