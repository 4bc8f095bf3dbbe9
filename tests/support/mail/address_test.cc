#include "support/mail/address.h"

#include <gtest/gtest.h>

namespace {

TEST(S821Address, ReadsMailboxes) {
    const struct {
        SString text;
        SString local;
        SString domain;
        SString address;
    } cases[] = {
        {"user@example.com", "user", "example.com", "user@example.com"},
        {"User.Name@Example.COM", "User.Name", "Example.COM", "User.Name@Example.COM"},
        {"<user@example.com>", "user", "example.com", "user@example.com"},
        {" \t<user@example.com>\r\n", "user", "example.com", "user@example.com"},
        {"< user@example.com >", "user", "example.com", "user@example.com"},
        {"<@relay.example:user@example.com>", "user", "example.com", "user@example.com"},
        {"<@one.example,@two.example:user@example.com>", "user", "example.com", "user@example.com"},
        {"@relay.example:user@example.com", "user", "example.com", "user@example.com"},
        {"user", "user", "", "user"},
        {"\"john smith\"@example.com", "john smith", "example.com", "\"john smith\"@example.com"},
        {"\"plain\"@example.com", "plain", "example.com", "plain@example.com"},
        {"\"a@b\"@example.com", "a@b", "example.com", "\"a@b\"@example.com"},
        {"\"a\\\"b\\\\c\"@example.com", "a\"b\\c", "example.com", "\"a\\\"b\\\\c\"@example.com"},
        {"a\\ b@example.com", "a b", "example.com", "\"a b\"@example.com"},
        {"\"john smith\".junior@example.com", "john smith.junior", "example.com",
         "\"john smith.junior\"@example.com"},
        {"\".\"@example.com", ".", "example.com", "\".\"@example.com"},
        {"\"a..b\"", "a..b", "", "\"a..b\""},
        {"user@[192.0.2.1]", "user", "[192.0.2.1]", "user@[192.0.2.1]"},
        {"user@[IPv6:2001:db8::1]", "user", "[IPv6:2001:db8::1]", "user@[IPv6:2001:db8::1]"},
        {"user@#12345", "user", "#12345", "user@#12345"},
        {"user@host", "user", "host", "user@host"},
        {"user@4you.example", "user", "4you.example", "user@4you.example"},
        {"user@my_host.example", "user", "my_host.example", "user@my_host.example"},
        {"!#$%&'*+-/=?^_`{|}~@example.com", "!#$%&'*+-/=?^_`{|}~", "example.com",
         "!#$%&'*+-/=?^_`{|}~@example.com"},
        {"Configuration@[192.0.2.1]", "Configuration", "[192.0.2.1]", "Configuration@[192.0.2.1]"},
    };
    for (const auto& c : cases) {
        const S821Address address(c.text);
        EXPECT_TRUE(address.IsValid()) << c.text;
        EXPECT_FALSE(address.IsNull()) << c.text;
        EXPECT_EQ(address.LocalPart(), c.local) << c.text;
        EXPECT_EQ(address.Domain(), c.domain) << c.text;
        EXPECT_EQ(address.Address(), c.address) << c.text;
        EXPECT_EQ(S821Address(address.Address()).Address(), c.address) << c.text;
    }
}

TEST(S821Address, KnowsTheNullAddress) {
    for (const char* text : {"", "<>", " ", " <> ", "< >"}) {
        const S821Address address{SString(text)};
        EXPECT_TRUE(address.IsValid()) << text;
        EXPECT_TRUE(address.IsNull()) << text;
        EXPECT_EQ(address.Address(), "") << text;
        EXPECT_EQ(address.Key(), "") << text;
    }
}

TEST(S821Address, RefusesWhatIsNone) {
    const SString texts[] = {
        "@",
        "user@",
        "@example.com",
        "user@example.com@example.net",
        "user@example..com",
        "user@.example.com",
        "user@example.com.",
        "user@-example.com",
        "user@example-.com",
        "user@exa mple.com",
        "user@ex\xc3\xa4mple.com",
        "us er@example.com",
        "us\xc3\xa9r@example.com",
        ".user@example.com",
        "user.@example.com",
        "us..er@example.com",
        "user(comment)@example.com",
        "user,other@example.com",
        "user;@example.com",
        "\"user@example.com",
        "\"\"@example.com",
        "\"user\"x@example.com",
        "user\\",
        "\"user\\",
        "a[b]@example.com",
        "user@[192.0.2.1",
        "user@[]",
        "user@[a@b]",
        "user@[192.0.2.1]x",
        "user@#",
        "user@#1a",
        "<user@example.com",
        "user@example.com>",
        "<user@example.com> x",
        "<<user@example.com>>",
        "<@relay.example user@example.com>",
        "<@relay.example:>",
        "<@relay.example,user@example.com>",
        "<@:user@example.com>",
        "\"line\nend\"@example.com",
        "\"line\\\r\\\nend\"@example.com",
        SString(std::string("us\0er@example.com", 17)),
        SString(std::string("\"us\0er\"@example.com", 19)),
        "\x7f@example.com",
        "-name with blanks",
    };
    for (const SString& text : texts) {
        const S821Address address(text);
        EXPECT_FALSE(address.IsValid()) << text;
        EXPECT_FALSE(address.IsNull()) << text;
        EXPECT_EQ(address.Address(), "") << text;
        EXPECT_EQ(address.Key(), "") << text;
    }
}

TEST(S821Address, ComparesWithoutRegardToCase) {
    EXPECT_EQ(S821Address("User@Example.COM").Key(), S821Address("<uSER@eXAMPLE.com>").Key());
    EXPECT_EQ(S821Address("\"User\"@example.com").Key(), S821Address("user@example.com").Key());
    EXPECT_NE(S821Address("user@example.com").Key(), S821Address("user@example.net").Key());
}

TEST(S821Address, TakesAnotherTextOrDomain) {
    S821Address address("user@example.com");
    address = SString("no address at all");
    EXPECT_FALSE(address.IsValid());
    EXPECT_EQ(address.LocalPart(), "");
    EXPECT_EQ(address.Domain(), "");
    address = SString("other");
    address.SetDomain("example.net");
    EXPECT_EQ(address.Address(), "other@example.net");
    EXPECT_FALSE(S821Address().IsValid());
}

TEST(S821Address, ReadsALongTextInOneGo) {
    const SString name('x', 1000000);
    EXPECT_EQ(S821Address(name + "@example.com").LocalPart(), name);
    std::string route = "<";
    for (int i = 0; i < 20000; ++i) route += i == 0 ? "@a.example" : ",@a.example";
    EXPECT_EQ(S821Address(SString(route + ":user@example.com>")).Address(), "user@example.com");
}

}  // namespace
