#include "install/accounts/login_index.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

#include "install/accounts/password_entries.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "support/text/sstring_list.h"
#include "tests/temporary_folder.h"

namespace {

TEST(LoginIndex, AgreesWithTheCLibrary) {
    LoginIndex logins;
    logins.Refresh();
    PasswordEntries entries;
    SStringList names;
    while (auto entry = entries.Next()) names.Push(entry->login);
    ASSERT_FALSE(names.IsEmpty());
    for (const SString& name : names) {
        const auto wanted = EntryOf(name);
        const auto found = logins.Find(name);
        ASSERT_EQ(found.has_value(), wanted.has_value()) << name;
        if (!wanted) continue;
        EXPECT_EQ(found->uid, wanted->uid) << name;
        EXPECT_EQ(found->gid, wanted->gid) << name;
        auto groups = GroupsOf(name, wanted->gid);
        auto found_groups = found->groups;
        std::sort(groups.begin(), groups.end());
        std::sort(found_groups.begin(), found_groups.end());
        EXPECT_EQ(found_groups, groups) << name;
    }
}

/// What this process has read so far, in bytes.
long BytesRead() {
    return MapFileRead("/proc/self/io").M("^rchar: (\\d+)").Get(0).ToNumber();
}

TEST(LoginIndex, ReadsTheDatabasesOnceAndNotForEachLogin) {
    LoginIndex logins;
    logins.Refresh();
    const long before = BytesRead();
    for (int i = 0; i < 1000; ++i) {
        logins.Refresh();
        ASSERT_TRUE(logins.Find("root"));
    }
    EXPECT_LT(BytesRead() - before, 1000 * 20);  // an entry of /etc/passwd is longer
}

TEST(LoginIndex, DoesNotKnowEveryName) {
    LoginIndex logins;
    logins.Refresh();
    for (const char* name : {"no-such-login", "", "+", "-root", "+root", "roo", "roots"}) {
        EXPECT_FALSE(logins.Find(name)) << name;
    }
}

TEST(LoginIndex, WorksWhereNoFileIsWatched) {
    const TemporaryFolder folder;
    LoginIndex logins(folder / "passwd", folder / "group");
    logins.Refresh();
    EXPECT_TRUE(logins.Find("root"));
    folder.Write("passwd", "changed\n");
    logins.Refresh();
    EXPECT_TRUE(logins.Find("root"));
    EXPECT_FALSE(logins.Find("no-such-login"));
}

}  // namespace
