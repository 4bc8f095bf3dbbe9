#include "install/settings.h"

#include <gtest/gtest.h>

namespace {

TEST(Settings, StartWithTheLoginsOfSeveralVendors) {
    EXPECT_EQ(
        SStringList(gppz_BadUsers).Join(" "),
        "adm audit sysadm diag auditor dbadmin rfindd EZsetup demos OutOfBox 4Dgifts bin daemon ftp ingres "
        "listen lp noaccess nobody nuucp smtp sundiag sync sys sysdiag uucp");
}

}  // namespace
