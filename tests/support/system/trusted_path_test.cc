#include "support/system/trusted_path.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

constexpr uid_t kAnna = 1001;

void MakeFolder(const SString& path, uid_t owner, mode_t mode = 0755) {
    ASSERT_TRUE(MakeDir(path, mode));
    ASSERT_EQ(chmod(path.CString(), mode), 0);
    ASSERT_EQ(chown(path.CString(), owner, owner), 0);
}

void MakeLinkOf(const SString& path, const SString& text, uid_t owner) {
    ASSERT_EQ(symlink(text.CString(), path.CString()), 0);
    ASSERT_EQ(lchown(path.CString(), owner, owner), 0);
}

/// Whether the path's file is reached, and by nobody's link but root's.
bool Reaches(const SString& path) {
    const auto place = FindTrusted(path);
    return place && place->Status().has_value() && EntryExists(place->Path());
}

TEST(FindTrusted, WalksDirectoriesWhosever) {
    const TemporaryFolder folder;
    MakeFolder(folder / "anna", kAnna);
    folder.Write("anna/file", "text");
    EXPECT_TRUE(Reaches(folder / "anna/file"));
    EXPECT_TRUE(Reaches(folder / "anna//./file"));
    EXPECT_TRUE(Reaches(folder / "anna/"));
}

TEST(FindTrusted, DoesNotFollowTheLastName) {
    const TemporaryFolder folder;
    MakeLinkOf(folder / "link", "/etc", 0);
    const auto place = FindTrusted(folder / "link");
    ASSERT_TRUE(place);
    EXPECT_EQ(place->name, "link");
    EXPECT_TRUE(S_ISLNK(place->Status()->st_mode));
}

TEST(FindTrusted, TellsWhatIsMissing) {
    const TemporaryFolder folder;
    const auto place = FindTrusted(folder / "missing");
    ASSERT_TRUE(place);
    EXPECT_FALSE(place->Status());
    EXPECT_FALSE(FindTrusted(folder / "missing/file"));
    EXPECT_EQ(errno, ENOENT);
    folder.Write("file", "");
    EXPECT_FALSE(FindTrusted(folder / "file/below"));
    EXPECT_EQ(errno, ENOTDIR);
    EXPECT_FALSE(FindTrusted("relative/path"));
    EXPECT_FALSE(FindTrusted("/"));
    EXPECT_FALSE(FindTrusted(""));
}

struct LinkCase {
    const char* what;
    uid_t folder_owner;
    mode_t folder_mode;
    uid_t link_owner;
    bool is_followed;
};

TEST(FindTrusted, FollowsOnlyWhatRootAloneCanHavePut) {
    const LinkCase cases[] = {
        {"root's", 0, 0755, 0, true},
        {"root's in a sticky directory", 0, 01777, 0, true},
        {"a user's in a sticky directory", 0, 01777, kAnna, false},
        {"root's where all write", 0, 0777, 0, false},
        {"root's where a group writes", 0, 0775, 0, false},
        {"root's in a user's directory", kAnna, 0755, 0, false},
        {"a user's", kAnna, 0755, kAnna, false},
    };
    for (const LinkCase& c : cases) {
        const TemporaryFolder folder;
        ASSERT_EQ(chmod((folder / ".").CString(), 0755), 0);
        MakeFolder(folder / "target", 0);
        folder.Write("target/file", "");
        MakeFolder(folder / "here", c.folder_owner, c.folder_mode);
        for (const SString& text : {SString("../target"), folder / "target"}) {
            MakeLinkOf(folder / "here/link", text, c.link_owner);
            EXPECT_EQ(Reaches(folder / "here/link/file"), c.is_followed) << c.what;
            if (!c.is_followed) {
                EXPECT_FALSE(OpenTrustedDirectory(folder / "here/link"));
                EXPECT_EQ(errno, ELOOP) << c.what;
            }
            RemoveFile(folder / "here/link");
        }
    }
}

TEST(FindTrusted, EndsInALoop) {
    const TemporaryFolder folder;
    MakeLinkOf(folder / "one", "two", 0);
    MakeLinkOf(folder / "two", "one", 0);
    EXPECT_FALSE(FindTrusted(folder / "one/file"));
    EXPECT_EQ(errno, ELOOP);
}

TEST(FindTrusted, KeepsToTheDirectoryThatItFound) {
    const TemporaryFolder folder;
    MakeFolder(folder / "one", 0);
    folder.Write("one/file", "");
    const auto place = FindTrusted(folder / "one/file");
    ASSERT_TRUE(place);
    ASSERT_TRUE(Rename(folder / "one", folder / "two"));
    MakeLinkOf(folder / "one", "/etc", kAnna);
    EXPECT_TRUE(place->Status());
    EXPECT_TRUE(RemoveFile(place->Path()));
    EXPECT_FALSE(EntryExists(folder / "two/file"));
}

TEST(OpenTrustedDirectory, FollowsRootsLinkAtTheEnd) {
    const TemporaryFolder folder;
    MakeFolder(folder / "mail", 0);
    MakeLinkOf(folder / "link", "mail", 0);
    const Descriptor directory = OpenTrustedDirectory(folder / "link/");
    ASSERT_TRUE(directory);
    EXPECT_EQ(fchmod(directory.Get(), 03777), 0);
    struct stat status {};
    ASSERT_EQ(stat((folder / "mail").CString(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 03777U);
    folder.Write("file", "");
    EXPECT_FALSE(OpenTrustedDirectory(folder / "file"));
}

}  // namespace
