#include "install/accounts/candidates.h"

#include <gtest/gtest.h>

namespace {

PasswordEntry Login(const SString& login, const SString& home) {
    PasswordEntry entry;
    entry.login = login;
    entry.home = home;
    return entry;
}

TEST(ReasonToSkip, IsTheNameOrTheLackOfAHome) {
    EXPECT_STREQ(ReasonToSkip(Login("bin", "/bin")), "system user");
    EXPECT_STREQ(ReasonToSkip(Login("bin", "")), "system user");
    EXPECT_STREQ(ReasonToSkip(Login("anna", "")), "no home directory");
    EXPECT_EQ(ReasonToSkip(Login("anna", "/home/anna")), nullptr);
}

}  // namespace
