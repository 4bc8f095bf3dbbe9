// A home of the test's for a login of the host's.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include "install/accounts/password_entries.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

/// "home-LOGIN" in the folder, owned by the login.
inline SString MakeHome(const TemporaryFolder& folder, const SString& login) {
    const SString home = folder / ("home-" + login);
    const auto entry = EntryOf(login);
    EXPECT_TRUE(entry) << login;
    MakeDir(home, 0755);
    EXPECT_EQ(chown(home.CString(), entry->uid, entry->gid), 0);
    return home;
}
