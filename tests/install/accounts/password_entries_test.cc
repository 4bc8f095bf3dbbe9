#include "install/accounts/password_entries.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/temporary_folder.h"

namespace {

std::vector<PasswordEntry> AllOf(PasswordEntries* entries) {
    std::vector<PasswordEntry> all;
    while (auto entry = entries->Next()) all.push_back(*entry);
    return all;
}

TEST(PasswordEntries, ReadsAFileInItsOrder) {
    const TemporaryFolder folder;
    PasswordEntries entries(folder.Write("passwd",
                                         "jones:x:1001:100:& Smith,Room 12:/home/jones:/bin/sh\n"
                                         "# a comment\n"
                                         "\n"
                                         "broken line\n"
                                         "empty:x:1002:100:::\n"
                                         "last:x:4294967295:4294967295:L:/home/last:"));
    ASSERT_TRUE(entries.IsOpen());
    const auto all = AllOf(&entries);
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0].login, "jones");
    EXPECT_EQ(all[0].uid, 1001U);
    EXPECT_EQ(all[0].gid, 100U);
    EXPECT_EQ(all[0].comment, "& Smith,Room 12");
    EXPECT_EQ(all[0].home, "/home/jones");
    EXPECT_EQ(all[1].comment, "");
    EXPECT_EQ(all[1].home, "");
    EXPECT_EQ(all[2].login, "last");
    EXPECT_EQ(all[2].uid, 4294967295U);
}

TEST(PasswordEntries, TakesAbsentFieldsForEmpty) {
    const TemporaryFolder folder;
    PasswordEntries entries(folder.Write("passwd", "-name\n+\n+@group\n"));
    const auto all = AllOf(&entries);
    ASSERT_FALSE(all.empty());
    for (const PasswordEntry& entry : all) {
        EXPECT_EQ(entry.comment, "") << entry.login;
        EXPECT_EQ(entry.home, "") << entry.login;
    }
    EXPECT_EQ(all[0].login, "-name");
}

TEST(PasswordEntries, HasNoneOfAFileThatCannotBeOpened) {
    const TemporaryFolder folder;
    PasswordEntries entries(folder / "missing");
    EXPECT_FALSE(entries.IsOpen());
    EXPECT_FALSE(entries.Next());
}

TEST(PasswordEntries, HasNoneOfAnEmptyFile) {
    const TemporaryFolder folder;
    PasswordEntries entries(folder.Write("passwd", ""));
    EXPECT_TRUE(entries.IsOpen());
    EXPECT_FALSE(entries.Next());
}

TEST(PasswordEntries, FindsRootAmongAllSources) {
    PasswordEntries entries;
    EXPECT_TRUE(entries.IsOpen());
    bool has_root = false;
    while (auto entry = entries.Next()) has_root = has_root || entry->login == "root";
    EXPECT_TRUE(has_root);
}

TEST(EntryOf, KnowsTheHostsLoginsOnly) {
    const auto root = EntryOf("root");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->uid, 0U);
    EXPECT_FALSE(EntryOf("no-such-login"));
    EXPECT_FALSE(EntryOf("-name"));
}

TEST(FullName, ComesFromTheComment) {
    const struct {
        SString comment;
        SString login;
        SString name;
    } cases[] = {
        {"Ann Lee", "ann", "Ann Lee"},
        {"Ann Lee,Room 12,555,", "ann", "Ann Lee"},
        {"& Smith,Room 12", "jones", "Jones Smith"},
        {"Joe & & Sons", "jones", "Joe Jones & Sons"},
        {"Ann,&", "jones", "Ann"},
        {"", "jones", "jones"},
        {",Room 12", "jones", "jones"},
        {"&", "jones", "Jones"},
        {"&", "Jones", "Jones"},
        {"&", "9lives", "9lives"},
        {"&", "\xc3\xa9lan", "\xc3\xa9lan"},
        {"&", "$1", "$1"},
        {"$1 & \\1", "a$1", "$1 A$1 \\1"},
        {"&", "a&b", "A&b"},
        {" ", "jones", " "},
        {"", "", ""},
        {"&", "", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(FullName(c.comment, c.login), c.name) << c.comment;
}

}  // namespace
