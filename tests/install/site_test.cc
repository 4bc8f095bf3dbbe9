#include "install/site.h"

#include <gtest/gtest.h>

namespace {

TEST(FullHostName, ReplacesTheHostsOwnDomain) {
    const struct {
        SString node, domain, name;
    } cases[] = {
        {"mail.old.example", "example.com", "mail.example.com"},
        {"mail", "example.com", "mail.example.com"},
        {"mail.", "example.com", "mail.example.com"},
        {"mail", "", "mail."},
        {"mail", "$1.example", "mail.$1.example"},
    };
    for (const auto& c : cases) EXPECT_EQ(FullHostName(c.node, c.domain), c.name) << c.node;
}

}  // namespace
