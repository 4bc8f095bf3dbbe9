#include "install/accounts/login_index.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

#include "install/accounts/password_entries.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "tests/temporary_folder.h"

namespace {

TEST(LoginIndex, AgreesWithTheCLibrary) {
    LoginIndex logins;
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

TEST(LoginIndex, DoesNotKnowEveryName) {
    LoginIndex logins;
    for (const char* name : {"no-such-login", "", "+", "-root", "+root", "roo", "roots"}) {
        EXPECT_FALSE(logins.Find(name)) << name;
    }
}

TEST(LoginIndex, WorksWhereNoFileIsWatched) {
    const TemporaryFolder folder;
    LoginIndex logins(folder / "passwd", folder / "group");
    EXPECT_TRUE(logins.Find("root"));
    folder.Write("passwd", "changed\n");
    EXPECT_TRUE(logins.Find("root"));
    EXPECT_FALSE(logins.Find("no-such-login"));
}

TEST(NameTable, FindsAllValuesOfANameInTheirOrder) {
    NameTable<int> table;
    table.Sort();
    EXPECT_TRUE(table.Find("a").empty());
    table.Add("b", 1);
    table.Add("a", 2);
    table.Add("b", 3);
    table.Add("", 4);
    table.Add("ba", 5);
    table.Add("b", 0);
    table.Sort();
    const auto rows = table.Find("b");
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0].value, 1);
    EXPECT_EQ(rows[1].value, 3);
    EXPECT_EQ(rows[2].value, 0);
    EXPECT_EQ(table.Find("").front().value, 4);
    EXPECT_EQ(table.Find("ba").front().value, 5);
    EXPECT_TRUE(table.Find("bab").empty());
    EXPECT_TRUE(table.Find("c").empty());
}

TEST(FileWatch, NoticesEveryKindOfChange) {
    const TemporaryFolder folder;
    FileWatch watch(folder / "file");
    EXPECT_TRUE(watch.HasChanged());  // the first look
    EXPECT_FALSE(watch.HasChanged());
    folder.Write("file", "one\n");
    EXPECT_TRUE(watch.HasChanged());
    EXPECT_FALSE(watch.HasChanged());
    folder.Write("file", "longer\n");
    EXPECT_TRUE(watch.HasChanged());
    folder.Write("other", "longer\n");
    ASSERT_TRUE(Rename(folder / "other", folder / "file"));
    EXPECT_TRUE(watch.HasChanged());
    ASSERT_TRUE(RemoveFile(folder / "file"));
    EXPECT_TRUE(watch.HasChanged());
    EXPECT_FALSE(watch.HasChanged());
}

}  // namespace
