#include "support/system/file.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "support/system/identity.h"
#include "tests/temporary_folder.h"

namespace {

constexpr uid_t kNobody = 65534;
constexpr uid_t kNobodyKnows = 54321;

SStringList Sorted(SStringList list) {
    list.Sort();
    return list;
}

SString Link(const TemporaryFolder& folder, const SString& name, const SString& target) {
    EXPECT_EQ(symlink(target.CString(), (folder / name).CString()), 0);
    return folder / name;
}

struct Kind {
    SString path;
    bool exists;
    bool has_entry;
    bool is_directory;
    bool is_regular;
};

TEST(File, TellsWhatStandsAtAPath) {
    const TemporaryFolder folder;
    const SString file = folder.Write("file", "text");
    const SString directory = folder / "directory";
    ASSERT_TRUE(MakeDir(directory, 0755));
    const Kind kinds[] = {
        {file, true, true, false, true},
        {directory, true, true, true, false},
        {directory + "/", true, true, true, false},
        {"/dev/null", true, true, false, false},
        {Link(folder, "to-file", "file"), true, true, false, true},
        {Link(folder, "to-directory", "directory"), true, true, true, false},
        {Link(folder, "dangling", "none"), false, true, false, false},
        {Link(folder, "loop", "loop"), false, true, false, false},
        {folder / "none", false, false, false, false},
        {file + "/below", false, false, false, false},
        {"", false, false, false, false},
    };
    for (const Kind& kind : kinds) {
        EXPECT_EQ(FileExists(kind.path), kind.exists) << kind.path;
        EXPECT_EQ(EntryExists(kind.path), kind.has_entry) << kind.path;
        EXPECT_EQ(IsDirectory(kind.path), kind.is_directory) << kind.path;
        EXPECT_EQ(IsRegular(kind.path), kind.is_regular) << kind.path;
    }
}

TEST(File, MayExistWhereItCannotBeTold) {
    const TemporaryFolder folder;  // closed to all but root
    const AsUser nobody({kNobody, kNobody, {kNobody}});
    ASSERT_TRUE(nobody.IsTaken());
    EXPECT_FALSE(FileExists(folder / "none"));
    EXPECT_TRUE(EntryExists(folder / "none"));
    EXPECT_EQ(FreeName(folder / "none"), "");
}

TEST(IsWriteable, NeedsAWriteBitEvenForRoot) {
    const TemporaryFolder folder;
    EXPECT_TRUE(IsWriteable(folder.Write("mine", "", 0600)));
    EXPECT_TRUE(IsWriteable(folder.Write("theirs", "", 0020)));
    EXPECT_FALSE(IsWriteable(folder.Write("read-only", "", 0555)));
    EXPECT_FALSE(IsWriteable(folder / "none"));
    EXPECT_FALSE(IsWriteable(Link(folder, "dangling", "none")));
}

TEST(IsWriteable, AsksForTheEffectiveUser) {
    const TemporaryFolder folder;
    const SString file = folder.Write("file", "", 0644);
    ASSERT_EQ(chmod((folder / "").CString(), 0755), 0);
    const AsUser nobody({kNobody, kNobody, {kNobody}});
    ASSERT_TRUE(nobody.IsTaken());
    EXPECT_FALSE(IsWriteable(file));
}

TEST(FileSize, IsInBytes) {
    const TemporaryFolder folder;
    EXPECT_EQ(FileSize(folder.Write("empty", "")), 0);
    EXPECT_EQ(FileSize(folder.Write("five", "12345")), 5);
    EXPECT_EQ(FileSize(folder / "none"), -1);
}

TEST(MakeDir, MakesOneDirectoryWithItsMode) {
    const TemporaryFolder folder;
    const mode_t mask = umask(0);
    EXPECT_TRUE(MakeDir(folder / "new", 0770));
    umask(mask);
    struct stat facts {};
    ASSERT_EQ(stat((folder / "new").CString(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777, 0770U);
    EXPECT_FALSE(MakeDir(folder / "new", 0770));
    EXPECT_FALSE(MakeDir(folder / "none/below", 0770));
}

TEST(ReadDir, GivesThePathsOfTheEntries) {
    const TemporaryFolder folder;
    EXPECT_TRUE(ReadDir(folder / "").IsEmpty());
    const SStringList entries = {folder.Write(".hidden", ""), folder.Write("a b", ""),
                                 Link(folder, "dangling", "none")};
    EXPECT_EQ(Sorted(ReadDir(folder / "")), Sorted(entries));
    EXPECT_EQ(Sorted(BaseName(ReadDir(folder / "."), "")), Sorted({".hidden", "a b", "dangling"}));
    EXPECT_TRUE(ReadDir(folder / "none").IsEmpty());
    EXPECT_TRUE(ReadDir(folder / "a b").IsEmpty());
}

TEST(RealPath, ResolvesEveryLink) {
    const TemporaryFolder folder;
    const SString file = folder.Write("file", "");
    Link(folder, "again", "to-file");
    Link(folder, "to-file", "file");
    EXPECT_EQ(RealPath(folder / "again"), RealPath(file));
    EXPECT_EQ(RealPath("/./usr/.."), "/");
    EXPECT_EQ(RealPath(folder / "none"), "");
    EXPECT_EQ(RealPath(Link(folder, "dangling", "none")), "");
    EXPECT_EQ(RealPath(""), "");
}

TEST(Rename, ReplacesTheTarget) {
    const TemporaryFolder folder;
    const SString from = folder.Write("from", "new");
    const SString to = folder.Write("to", "old");
    EXPECT_TRUE(Rename(from, to));
    EXPECT_EQ(MapFileRead(to), "new");
    EXPECT_FALSE(FileExists(from));
    EXPECT_FALSE(Rename(from, to));
}

TEST(RenameNoReplace, NeverReplaces) {
    const TemporaryFolder folder;
    const SString from = folder.Write("from", "new");
    const SString directory = folder / "directory";
    ASSERT_TRUE(MakeDir(directory, 0700));
    for (const SString& taken : {folder.Write("to", "old"), Link(folder, "dangling", "none"), directory}) {
        EXPECT_FALSE(RenameNoReplace(from, taken)) << taken;
        EXPECT_FALSE(RenameNoReplace(directory, taken)) << taken;
    }
    EXPECT_EQ(MapFileRead(folder / "to"), "old");
    EXPECT_TRUE(RenameNoReplace(from, folder / "free"));
    EXPECT_EQ(MapFileRead(folder / "free"), "new");
    EXPECT_FALSE(FileExists(from));
    EXPECT_TRUE(RenameNoReplace(directory, folder / "moved"));
    EXPECT_TRUE(IsDirectory(folder / "moved"));
}

TEST(RemoveFile, RemovesALinkAndNotItsTarget) {
    const TemporaryFolder folder;
    const SString file = folder.Write("file", "");
    EXPECT_TRUE(RemoveFile(Link(folder, "link", "file")));
    EXPECT_FALSE(EntryExists(folder / "link"));
    EXPECT_TRUE(RemoveFile(file));
    EXPECT_FALSE(RemoveFile(file));
}

TEST(MapFileRead, ReadsEveryByte) {
    const TemporaryFolder folder;
    const SString bytes(std::string("a\0b\n\xff", 5));
    EXPECT_EQ(MapFileRead(folder.Write("file", bytes)), bytes);
    EXPECT_EQ(MapFileRead(folder / "none"), "");
    EXPECT_EQ(MapFileRead(folder / ""), "");
}

TEST(MapFileRead, DoesNotWaitForAPipe) {
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo((folder / "pipe").CString(), 0600), 0);
    EXPECT_EQ(MapFileRead(folder / "pipe"), "");
}

struct Base {
    SString path;
    SString suffix;
    SString name;
};

TEST(BaseName, IsTheLastComponentWithoutItsSuffix) {
    const Base cases[] = {
        {"/etc/tern.harbor.conf", "", "tern.harbor.conf"},
        {"/etc/tern.harbor.conf", ".conf", "tern.harbor"},
        {"SMTP.install", ".install", "SMTP"},
        {"SMTP.install.old", ".install", "SMTP.install.old"},
        {"dir.install/SMTP", ".install", "SMTP"},
        {"/var/spool/mail/", "", "mail"},
        {"/", "", ""},
        {"", "", ""},
        {"", "x", ""},
    };
    for (const Base& base : cases) EXPECT_EQ(BaseName(base.path, base.suffix), base.name) << base.path;
    EXPECT_EQ(BaseName("/a/b", ""), SString("b"));
    EXPECT_EQ(BaseName(SStringList{"/b/x.c", "a.c"}, ".c"), (SStringList{"x", "a"}));
    EXPECT_TRUE(BaseName(SStringList(), "").IsEmpty());
}

TEST(HiddenBeside, IsInTheSameDirectory) {
    EXPECT_EQ(HiddenBeside("/a/b", ".new"), "/a/.b.new");
    EXPECT_EQ(HiddenBeside("b", ""), ".b");
}

TEST(FileOwner, IsTheNameOfTheEntrysOwner) {
    const TemporaryFolder folder;
    const SString file = folder.Write("file", "");
    const SString link = Link(folder, "link", "file");
    ASSERT_EQ(lchown(link.CString(), 1, 1), 0);
    EXPECT_EQ(FileOwner(file), "root");
    EXPECT_EQ(FileGroup(file), "root");
    EXPECT_EQ(FileOwner(link), "daemon");
    EXPECT_EQ(FileGroup(link), "daemon");
}

TEST(FileOwner, IsEmptyWhereItIsNotKnown) {
    const TemporaryFolder folder;
    const SString file = folder.Write("file", "");
    ASSERT_EQ(chown(file.CString(), kNobodyKnows, kNobodyKnows), 0);
    for (const SString& path : {file, folder / "none", SString()}) {
        EXPECT_EQ(FileOwner(path), "");
        EXPECT_EQ(FileGroup(path), "");
    }
}

TEST(FreeName, PassesOverEverythingThatStands) {
    const TemporaryFolder folder;
    const SString name = folder / "file.bak";
    EXPECT_EQ(FreeName(name), name);
    folder.Write("file.bak", "");
    EXPECT_EQ(FreeName(name), name + "1");
    Link(folder, "file.bak1", "none");
    ASSERT_TRUE(MakeDir(name + "2", 0700));
    folder.Write("file.bak4", "");
    EXPECT_EQ(FreeName(name), name + "3");
}

}  // namespace
