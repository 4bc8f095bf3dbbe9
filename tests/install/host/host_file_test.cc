#include "install/host/host_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <utility>

#include "install/host/rewrite_note.h"
#include "support/system/file.h"
#include "tests/install/record/recording.h"
#include "tests/temporary_folder.h"

namespace {

SStringList Reverse(SStringList lines) {
    std::reverse(lines.begin(), lines.end());
    return lines;
}

struct stat StatusOf(const SString& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.CString(), &status), 0) << path;
    return status;
}

mode_t ModeOf(const SString& path) {
    return StatusOf(path).st_mode & 07777;
}

TEST(ReadHostFile, KeepsLineEndsAndAnUnterminatedLastLine) {
    const TemporaryFolder folder;
    const SString nul = SString('\0', 1);
    const SString path = folder.Write("file", "one\r\n\ntwo " + nul + "\nlast");
    const auto lines = ReadHostFile(path);
    ASSERT_TRUE(lines);
    EXPECT_EQ(*lines, SStringList({"one\r\n", "\n", "two " + nul + "\n", "last"}));
}

TEST(ReadHostFile, GivesAnEmptyFileNoLines) {
    const TemporaryFolder folder;
    const auto lines = ReadHostFile(folder.Write("file", ""));
    ASSERT_TRUE(lines);
    EXPECT_TRUE(lines->IsEmpty());
}

TEST(ReadHostFile, RefusesWhatIsNoRegularFile) {
    const TemporaryFolder folder;
    ASSERT_EQ(mkdir((folder / "directory").CString(), 0755), 0);
    ASSERT_EQ(mkfifo((folder / "fifo").CString(), 0644), 0);
    ASSERT_EQ(symlink("nothing", (folder / "dangling").CString()), 0);
    for (const SString name : {"missing", "directory", "fifo", "dangling"}) {
        EXPECT_FALSE(ReadHostFile(folder / name)) << name;
        EXPECT_FALSE(RewriteHostFile(folder / name, Reverse)) << name;
        EXPECT_FALSE(EntryExists(folder / (name + ".bak"))) << name;
    }
}

TEST(RewriteHostFile, LeavesTheOldBytesInABackup) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "one\ntwo\n");
    EXPECT_TRUE(RewriteHostFile(path, Reverse));
    EXPECT_EQ(MapFileRead(path), "two\none\n");
    EXPECT_EQ(MapFileRead(path + ".bak"), "one\ntwo\n");
}

TEST(RewriteHostFile, ShortensAFile) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "one\ntwo\n");
    EXPECT_TRUE(RewriteHostFile(path, [](const SStringList&) { return SStringList("x\n"); }));
    EXPECT_EQ(MapFileRead(path), "x\n");
}

TEST(RewriteHostFile, TakesTheFirstFreeBackupName) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "new\n");
    folder.Write("file.bak", "old\n");
    ASSERT_EQ(symlink("nothing", (folder / "file.bak1").CString()), 0);
    EXPECT_TRUE(RewriteHostFile(path, Reverse));
    EXPECT_EQ(MapFileRead(path + ".bak"), "old\n");
    EXPECT_FALSE(FileExists(folder / "nothing"));
    EXPECT_EQ(MapFileRead(path + ".bak2"), "new\n");
}

TEST(RewriteHostFile, GivesTheBackupOwnerAndModeOfTheFile) {
    const TemporaryFolder folder;
    for (const mode_t mode : {0644U, 0600U, 0444U, 0400U, 0U, 02755U}) {
        const SString path = folder.Write("file" + SString(mode), "one\n", mode);
        ASSERT_EQ(chown(path.CString(), 12, 34), 0);
        ASSERT_EQ(chmod(path.CString(), mode), 0);
        EXPECT_TRUE(RewriteHostFile(path, Reverse));
        for (const SString& name : {path, path + ".bak"}) {
            EXPECT_EQ(ModeOf(name), mode) << name;
            EXPECT_EQ(StatusOf(name).st_uid, 12U) << name;
            EXPECT_EQ(StatusOf(name).st_gid, 34U) << name;
        }
    }
}

TEST(RewriteHostFile, KeepsTheFileItselfAndItsOtherNames) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "one\ntwo\n");
    ASSERT_EQ(link(path.CString(), (folder / "other").CString()), 0);
    const ino_t before = StatusOf(path).st_ino;
    EXPECT_TRUE(RewriteHostFile(path, Reverse));
    EXPECT_EQ(StatusOf(path).st_ino, before);
    EXPECT_EQ(MapFileRead(folder / "other"), "two\none\n");
}

TEST(RewriteHostFile, LeavesNothingBehindWhereTheBackupHasNoRoom) {
    // Every name that could be tried is too long for the file system; the file's own is not.
    const TemporaryFolder folder;
    const SString path = folder.Write(SString('x', 253), "one\n", 0444);
    EXPECT_FALSE(RewriteHostFile(path, Reverse));
    EXPECT_EQ(MapFileRead(path), "one\n");
    EXPECT_EQ(ModeOf(path), 0444U);
    EXPECT_EQ(ReadDir(folder / "").Count(), 1U);
}

TEST(RewriteHostFile, LeavesAFileAloneThatWasReplacedMeanwhile) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "one\ntwo\n");
    EXPECT_FALSE(RewriteHostFile(path, [&](SStringList lines) {
        Rename(folder.Write("draft", "an editor's new version\n"), path);
        return Reverse(std::move(lines));
    }));
    EXPECT_EQ(MapFileRead(path), "an editor's new version\n");
    EXPECT_FALSE(EntryExists(path + ".bak"));
}

TEST(RewriteHostFile, LeavesAFileAloneThatGrewMeanwhile) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "one\n");
    EXPECT_FALSE(RewriteHostFile(path, [&](SStringList lines) {
        folder.Write("file", "one\ntwo\n");
        return lines;
    }));
    EXPECT_EQ(MapFileRead(path), "one\ntwo\n");
    EXPECT_FALSE(EntryExists(path + ".bak"));
}

TEST(RewriteHostFile, LeavesAFileAloneThatWasEditedMeanwhile) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "one\n", 0444);
    EXPECT_FALSE(RewriteHostFile(path, [&](SStringList lines) {
        folder.Write("file", "two\n", 0444);
        return lines;
    }));
    EXPECT_EQ(MapFileRead(path), "two\n");
    EXPECT_EQ(ModeOf(path), 0444U);
    EXPECT_EQ(ReadDir(folder / ".").Count(), 1U) << "neither a backup nor a note";
}

/// No file of this process may grow beyond so many bytes, for a scope; a write that would fails.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit before_{};
    void (*handler_)(int);
};

TEST(RewriteHostFile, TouchesNothingWhereTheNewTextFindsNoRoom) {
    const TemporaryFolder folder;
    const SString old(SString('o', 1000) + "\n");
    const SString path = folder.Write("file", old, 0444);
    {
        const FileSizeLimit limit(1500);
        EXPECT_FALSE(
            RewriteHostFile(path, [](const SStringList&) { return SStringList(SString('n', 2000)); }));
    }
    EXPECT_EQ(MapFileRead(path), old);
    EXPECT_EQ(ModeOf(path), 0444U);
    EXPECT_EQ(ReadDir(folder / "").Count(), 1U);
}

TEST(RewriteHostFile, RemovesABackupThatFindsNoRoom) {
    const TemporaryFolder folder;
    const SString old(SString('o', 1000) + "\n");
    const SString path = folder.Write("file", old, 0444);
    {
        const FileSizeLimit limit(500);
        EXPECT_FALSE(RewriteHostFile(path, Reverse));
    }
    EXPECT_EQ(MapFileRead(path), old);
    EXPECT_EQ(ModeOf(path), 0444U);
    EXPECT_FALSE(EntryExists(path + ".bak"));
}

TEST(RewriteHostFile, LeavesNoNote) {
    const TemporaryFolder folder;
    EXPECT_TRUE(RewriteHostFile(folder.Write("file", "one\ntwo\n"), Reverse));
    EXPECT_EQ(ReadDir(folder / "").Count(), 2U);
}

TEST(RewriteHostFile, AnnouncesTheNewTextBeforeTheNoteGoes) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "one\ntwo\n");
    int count = 0;
    const auto look = [&](const SString& before) {
        ++count;
        EXPECT_EQ(before, "one\ntwo\n");
        EXPECT_EQ(MapFileRead(path), "two\none\n");
        EXPECT_TRUE(ReadNote(path).is_written);
    };
    EXPECT_TRUE(RewriteHostFile(path, Reverse, look));
    EXPECT_EQ(count, 1);
    // Killed before it could tell anybody.
    ASSERT_TRUE(WriteNote(path, {0644, "one\ntwo\n", "two\none\n"}));
    EXPECT_TRUE(FinishRewrite(path, look));
    EXPECT_EQ(count, 2);
    EXPECT_TRUE(FinishRewrite(path, look));
    EXPECT_EQ(count, 2);
}

void Refuse(const SString& /*before*/) {
    ADD_FAILURE();
}

TEST(RewriteHostFile, AnnouncesNoTextThatTheFileDoesNotHave) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "old\n");
    const FileSizeLimit limit(1500);
    const auto grow = [](const SStringList&) { return SStringList(SString('n', 2000)); };
    EXPECT_FALSE(RewriteHostFile(path, grow, Refuse));
    ASSERT_TRUE(WriteNote(path, {0644, "old\n", "new\n"}));
    EXPECT_TRUE(FinishRewrite(path, Refuse));
}

const SString kNul('\0', 1);
const Rewrite kRewrite{0444, "old\none\n", "new\nones\n"};

TEST(FinishRewrite, FinishesACutPieceAndNothingElse) {
    const std::pair<SString, SString> cases[] = {
        {"", "new\nones\n"},
        {"n", "new\nones\n"},
        {"new\nones", "new\nones\n"},
        {"new" + kNul + kNul, "new\nones\n"},
        {kNul + kNul, "new\nones\n"},
        {kNul + "ew" + kNul + "ones", "new\nones\n"},
        {"new\nones\n", "new\nones\n"},
        // The old text was being put back.
        {"old\n", "old\none\n"},
        {"old\none\n", "old\none\n"},
        // Edited since.
        {"new\nones\nmore\n", "new\nones\nmore\n"},
        {"new\n#", "new\n#"},
        {"another\n", "another\n"},
        {SString('\0', 10), SString('\0', 10)},
    };
    for (const auto& [found, whole] : cases) {
        const TemporaryFolder folder;
        const SString path = folder.Write("file", found);
        ASSERT_TRUE(WriteNote(path, kRewrite));
        bool is_announced = false;
        EXPECT_TRUE(FinishRewrite(path, [&](const SString& before) {
            is_announced = true;
            EXPECT_EQ(before, kRewrite.before);
        })) << found;
        EXPECT_EQ(is_announced, whole != kRewrite.before) << found;
        EXPECT_EQ(MapFileRead(path), whole) << found;
        EXPECT_EQ(ReadDir(folder / ""), SStringList(path)) << found;
    }
}

TEST(FinishRewrite, LeavesAloneWhatWasWrittenWhole) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "new\n");  // the rest was removed by hand
    ASSERT_TRUE(WriteNote(path, kRewrite));
    ASSERT_TRUE(MarkWritten(path));
    bool is_announced = false;
    EXPECT_TRUE(FinishRewrite(path, [&](const SString& /*before*/) { is_announced = true; }));
    EXPECT_TRUE(is_announced);
    EXPECT_EQ(MapFileRead(path), "new\n");
    EXPECT_EQ(ReadDir(folder / ""), SStringList(path));
}

TEST(FinishRewrite, TakesAwayTheWritePermissionThatTheRewriteHadAdded) {
    struct Case {
        mode_t mode;
        SString bytes;
        mode_t after;
    };
    const Case cases[] = {
        {0644, "new\n", 0444},     {0644, kRewrite.before, 0444}, {0644, kRewrite.after, 0444},
        {0444, "new\n", 0444},     {0600, "new\n", 0600},         {0400, "new\n", 0400},
        {0644, "another\n", 0644},
    };
    for (const Case& each : cases) {
        const TemporaryFolder folder;
        const SString path = folder.Write("file", each.bytes, each.mode);
        ASSERT_TRUE(WriteNote(path, kRewrite));
        EXPECT_TRUE(FinishRewrite(path));
        EXPECT_EQ(ModeOf(path), each.after) << each.bytes << each.mode;
    }
}

TEST(FinishRewrite, ComesBeforeTheFileIsRewritten) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "ne");
    ASSERT_TRUE(WriteNote(path, kRewrite));
    EXPECT_TRUE(RewriteHostFile(path, Reverse));
    EXPECT_EQ(MapFileRead(path), "ones\nnew\n");
    EXPECT_EQ(MapFileRead(path + ".bak"), "new\nones\n");
}

TEST(FinishRewrite, PutsTheOldTextBackWhereTheNewOneFindsNoRoom) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "n");
    ASSERT_TRUE(WriteNote(path, {0644, "old\n", SString('n', 2000)}));
    const FileSizeLimit limit(1500);
    EXPECT_TRUE(FinishRewrite(path));
    EXPECT_EQ(MapFileRead(path), "old\n");
}

TEST(FinishRewrite, KeepsTheNoteOfAFileThatStaysCut) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "n");
    ASSERT_TRUE(WriteNote(path, kRewrite));
    {
        const FileSizeLimit limit(4);
        EXPECT_FALSE(FinishRewrite(path));
        EXPECT_FALSE(RewriteHostFile(path, Reverse));
    }
    EXPECT_TRUE(FinishRewrite(path));
    EXPECT_EQ(MapFileRead(path), "old\none\n");  // it was being put back
}

TEST(FinishRewrite, KeepsTheNoteOfAFileThatIsNotThere) {
    const TemporaryFolder folder;
    const SString path = folder / "file";
    ASSERT_TRUE(WriteNote(path, kRewrite));
    EXPECT_FALSE(FinishRewrite(path));
    EXPECT_EQ(ReadDir(folder / "").Count(), 1U);
}

TEST(RewriteHostFile, IsRecordedBeforeThereIsABackup) {
    const TemporaryFolder folder;
    const SString path = folder.Write("file", "a\nb\n", 0444);
    folder.Write("file.bak", "older");
    const Recording recording;
    EXPECT_TRUE(RewriteHostFile(path, Reverse));
    const auto rewritten = recording.Only<change::HostFileRewritten>();
    EXPECT_EQ(rewritten.path, path);
    EXPECT_EQ(rewritten.backup, path + ".bak1");
    EXPECT_EQ(rewritten.mode.bits, 0444U);
    EXPECT_EQ(rewritten.before, Checksum("a\nb\n"));
    EXPECT_EQ(rewritten.after, Checksum("b\na\n"));
}

}  // namespace
