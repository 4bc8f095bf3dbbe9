#include "install/host/rewrite_note.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

const Rewrite kRewrite{0640, "old\n", SString(std::string("new\0\n", 5))};

bool HasNote(const SString& path) {
    return ReadNote(path).rewrite.has_value();
}

TEST(RewriteNote, ComesBackAsItWasWritten) {
    const TemporaryFolder folder;
    for (const Rewrite& rewrite : {kRewrite, Rewrite{0, "", ""}, Rewrite{07777, "1 2 3\n", ""}}) {
        ASSERT_TRUE(WriteNote(folder / "file", rewrite));
        const FoundNote note = ReadNote(folder / "file");
        ASSERT_TRUE(note.rewrite);
        EXPECT_EQ(note.rewrite->mode, rewrite.mode);
        EXPECT_EQ(note.rewrite->before, rewrite.before);
        EXPECT_EQ(note.rewrite->after, rewrite.after);
    }
}

TEST(RewriteNote, IsReadableByRootOnly) {
    const TemporaryFolder folder;
    const mode_t mask = umask(0);
    ASSERT_TRUE(WriteNote(folder / "file", kRewrite));
    umask(mask);
    struct stat status {};
    ASSERT_EQ(stat((folder / ".file.rewrite").CString(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
}

TEST(RewriteNote, IsGoneWhenRemoved) {
    const TemporaryFolder folder;
    folder.Write(".file.rewrite.new", "of a killed run");
    EXPECT_FALSE(WriteNote(folder / "file", kRewrite));
    RemoveDraft(folder / "file");
    EXPECT_TRUE(WriteNote(folder / "file", kRewrite));
    RemoveNote(folder / "file");
    EXPECT_TRUE(ReadDir(folder / "").IsEmpty());
    EXPECT_TRUE(ReadNote(folder / "file").is_readable);
    EXPECT_FALSE(HasNote(folder / "file"));
}

TEST(RewriteNote, IsNotWhatSomebodyElsePutThere) {
    const TemporaryFolder folder;
    const SString path = folder / "file";
    const SString name = folder / ".file.rewrite";
    ASSERT_TRUE(WriteNote(path, kRewrite));
    ASSERT_EQ(chmod(name.CString(), 0620), 0);
    EXPECT_FALSE(HasNote(path)) << "written by a group";
    ASSERT_EQ(chmod(name.CString(), 0644), 0);
    EXPECT_TRUE(HasNote(path));
    ASSERT_EQ(chown(name.CString(), 1, 0), 0);
    EXPECT_FALSE(HasNote(path)) << "another user's";
    ASSERT_EQ(chown(name.CString(), 0, 0), 0);
    ASSERT_TRUE(AddName(name, folder / "other"));
    EXPECT_FALSE(HasNote(path)) << "of two names";
    EXPECT_FALSE(ReadNote(path).is_readable);
    ASSERT_TRUE(RemoveFile(name));
    ASSERT_EQ(symlink("other", name.CString()), 0);
    EXPECT_FALSE(HasNote(path)) << "a link";
    ASSERT_TRUE(RemoveFile(name));
    ASSERT_EQ(mkfifo(name.CString(), 0600), 0);
    EXPECT_FALSE(HasNote(path)) << "a FIFO";
    EXPECT_TRUE(ReadNote(path).is_readable);
}

TEST(RewriteNote, IsNotWhatWasDamaged) {
    const TemporaryFolder folder;
    for (const char* text : {"", "416 4 4", "416 4\noldnew", "416 4 4\nold\nnew", "416 4 4\nold\nnew\n\n",
                             "416 9 0\nold\nnew\n", "0416 4 4\nold\nnew\n", "x 4 4\nold\nnew\n"}) {
        folder.Write(".file.rewrite", text, 0600);
        EXPECT_FALSE(HasNote(folder / "file")) << text;
    }
}

}  // namespace
