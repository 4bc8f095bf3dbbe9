#include "undo/records.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/system/file.h"
#include "tests/temporary_folder.h"
#include "undo/undone.h"

namespace {

constexpr char kName[] = "20261122T170405Z-4711";

SString LineFor(const Change& change) {
    return LineOf({"2026-11-22T17:04:06Z", change});
}

SString Mode() {
    return LineFor(change::ModeSet{"/var/mail", {0775}, {02775}});
}

SString Whole() {
    return FormatLine() + Mode() + LineFor(change::RunEnded{0});
}

RecordedRun ReadOnly(const TemporaryFolder& folder, const SString& text, mode_t mode = 0600) {
    folder.Write(kName, text, mode);
    return Records(folder / ".").Read(kName);
}

TEST(Records, AreOrderedByTime) {
    const TemporaryFolder folder;
    for (const char* name : {"20261123T000000Z-1", kName, "20261122T170405Z-4711.kept", "key", "notes"}) {
        folder.Write(name, "");
    }
    EXPECT_EQ(Records(folder / ".").Names(), SStringList({kName, "20261123T000000Z-1"}));
}

TEST(Records, AreNotThereWithoutADirectory) {
    const TemporaryFolder folder;
    const Records records(folder / "missing");
    EXPECT_EQ(records.Fault(), "");
    EXPECT_TRUE(records.Names().IsEmpty());
}

TEST(Records, AreRefusedInADirectoryThatIsNotRootsAlone) {
    const TemporaryFolder folder;
    folder.Write(kName, Whole(), 0600);
    const SString path = folder / ".";
    ASSERT_EQ(chmod(path.CString(), 0750), 0);
    EXPECT_EQ(Records(path).Fault(), path + " is open to others: chmod 700 " + path);
    EXPECT_TRUE(Records(path).Names().IsEmpty());
    ASSERT_EQ(chmod(path.CString(), 0700), 0);
    ASSERT_EQ(chown(path.CString(), 1001, 0), 0);
    EXPECT_EQ(Records(path).Fault(), path + " is not root's: what it says is not trusted");
}

TEST(Records, OfOneSecondAreInTheOrderOfTheirProcesses) {
    const TemporaryFolder folder;
    const SString second = "20261122T170405Z-100";
    const SString first = "20261122T170405Z-99";
    for (const SString& name : {second, first}) {
        ASSERT_TRUE(Descriptor::Open(folder / name, O_WRONLY | O_CREAT, 0600));
    }
    const Records records(folder / ".");
    EXPECT_EQ(records.Names(), SStringList({first, second}));
    EXPECT_EQ(records.After(first), SStringList(second));
    EXPECT_TRUE(records.After(second).IsEmpty());
}

TEST(Records, AreReadWhole) {
    const TemporaryFolder folder;
    const RecordedRun run = ReadOnly(folder, Whole());
    EXPECT_EQ(run.fault, "");
    EXPECT_EQ(run.changes.size(), 1U);
    EXPECT_EQ(run.status, 0);
    EXPECT_FALSE(run.is_cut);
}

TEST(Records, LackALineThatWasCut) {
    const TemporaryFolder folder;
    const RecordedRun run = ReadOnly(folder, FormatLine() + Mode() + SString(Mode()).Chop());
    EXPECT_EQ(run.fault, "");
    EXPECT_EQ(run.changes.size(), 1U);
    EXPECT_TRUE(run.is_cut);
    EXPECT_FALSE(run.status);
}

TEST(Records, AreRefusedWithALineThatSaysNothing) {
    const TemporaryFolder folder;
    EXPECT_EQ(ReadOnly(folder, FormatLine() + Mode() + "{}\n" + Mode()).fault, "line 3 cannot be understood");
    EXPECT_EQ(ReadOnly(folder, "{\"format\":2}\n" + Mode()).fault,
              "its first line is not the one of this version's records");
}

TEST(Records, OfARunThatWasKilledBeforeItsFirstChangeAreEmpty) {
    const TemporaryFolder folder;
    const RecordedRun run = ReadOnly(folder, "");
    EXPECT_EQ(run.fault, "");
    EXPECT_TRUE(run.changes.empty());
    EXPECT_FALSE(run.status);
}

TEST(Records, AreRefusedWhereOthersHadAHandInThem) {
    const TemporaryFolder folder;
    EXPECT_EQ(ReadOnly(folder, Whole(), 0620).fault, "others can write it");
    EXPECT_EQ(ReadOnly(folder, Whole(), 0604).fault, "");
    const SString path = folder / kName;
    ASSERT_EQ(link(path.CString(), (folder / "other").CString()), 0);
    EXPECT_EQ(ReadOnly(folder, Whole()).fault, "it has another name");
    ASSERT_EQ(unlink((folder / "other").CString()), 0);
    ASSERT_EQ(chown(path.CString(), 1001, 0), 0);
    EXPECT_EQ(ReadOnly(folder, Whole(), 0600).fault, "it is not root's");
    ASSERT_EQ(unlink(path.CString()), 0);
    folder.Write("target", Whole(), 0600);
    ASSERT_EQ(symlink("target", path.CString()), 0);
    EXPECT_EQ(Records(folder / ".").Read(kName).fault, "Too many levels of symbolic links");
    ASSERT_EQ(unlink(path.CString()), 0);
    ASSERT_EQ(mkfifo(path.CString(), 0600), 0);
    EXPECT_EQ(Records(folder / ".").Read(kName).fault, "it is no regular file");
}

TEST(Records, HaveAKeyBesideThem) {
    const TemporaryFolder folder;
    EXPECT_EQ(Records(folder / ".").KeyOf(kName), "");
    const SString kept = SString(kName) + ".kept";
    ASSERT_EQ(mkdir((folder / kept).CString(), 0700), 0);
    folder.Write(kept + "/key", "secret", 0600);
    EXPECT_EQ(Records(folder / ".").KeyOf(kName), "secret");
    EXPECT_EQ(Records(folder / ".").KeptOf(kName), folder / "./" + kept + "/");
}

TEST(TimeOf, IsInTheName) {
    EXPECT_EQ(TimeOf(kName), "2026-11-22T17:04:05Z");
    EXPECT_EQ(PlainTimeOf(kName), "2026-11-22 17:04:05 UTC");
}

TEST(ReadUndone, KnowsNothingWhereOthersHadAHandInIt) {
    const TemporaryFolder folder;
    const Records records(folder / ".");
    EXPECT_EQ(ReadUndone(records, kName).fault, "");
    EXPECT_FALSE(ReadUndone(records, kName).is_begun);
    UndoneRecord(records, kName).Begin({});
    EXPECT_TRUE(ReadUndone(records, kName).is_begun);
    const SString file = SString(kName) + ".undone";
    chmod((folder / file).CString(), 0620);
    EXPECT_EQ(ReadUndone(records, kName).fault, file + ": others can write it");
    unlink((folder / file).CString());
    ASSERT_EQ(symlink("nowhere", (folder / file).CString()), 0);
    EXPECT_EQ(ReadUndone(records, kName).fault, file + ": Too many levels of symbolic links");
}

TEST(UndoneRecord, TellsWhatWasAsBeforeOnceItIsFinished) {
    const TemporaryFolder folder;
    const Records records(folder / ".");
    UndoneRecord record(records, kName);
    record.Begin({});
    record.Add(2, kAsBefore, {});
    record.Add(3, kTakenBack, {});
    EXPECT_TRUE(ReadUndone(records, kName).as_before.empty());
    record.Finish({}, false);
    EXPECT_EQ(ReadUndone(records, kName).as_before, std::set<size_t>{2});
    EXPECT_EQ(ReadUndone(records, kName).taken_back, std::set<size_t>{3});
}

TEST(UndoneRecord, TellsWhatWasFinished) {
    const TemporaryFolder folder;
    const Records records(folder / ".");
    EXPECT_FALSE(ReadUndone(records, kName).is_begun);
    UndoneRecord record(records, kName);
    record.Begin({});
    record.Add(2, "changed since", SStringList("a \xff name"));
    EXPECT_TRUE(ReadUndone(records, kName).is_begun);
    EXPECT_EQ(ReadUndone(records, kName).finished, "");
    record.Add(3, kTakenBack, {});
    record.Add(4, kTakenBack, SStringList("left"));
    record.Finish({true, false}, true);
    EXPECT_TRUE(record.IsWhole());
    const Undone undone = ReadUndone(records, kName);
    EXPECT_TRUE(undone.finished.Matches("^\\d{4}-\\d\\d-\\d\\dT"));
    EXPECT_TRUE(undone.options.accounts);
    EXPECT_FALSE(undone.options.units);
    EXPECT_TRUE(undone.has_left);
    EXPECT_EQ(undone.taken_back, std::set<size_t>({3}));
    record.Finish({}, false);
    EXPECT_FALSE(ReadUndone(records, kName).has_left);
    EXPECT_FALSE(ReadUndone(records, kName).is_open);
    EXPECT_TRUE(IsDone(ReadUndone(records, kName), {}));
    record.Begin({true, false});
    EXPECT_FALSE(IsDone(ReadUndone(records, kName), {}));
    EXPECT_TRUE(ReadUndone(records, kName).is_open);
    EXPECT_NE(ReadUndone(records, kName).finished, "");
}

TEST(UndoneRecord, IsGoneOnWithAfterACutLine) {
    const TemporaryFolder folder;
    const Records records(folder / ".");
    folder.Write(SString(kName) + ".undone", "{\"time\":\"20", 0600);
    UndoneRecord record(records, kName);
    record.Begin({});
    record.Finish({}, false);
    EXPECT_NE(ReadUndone(records, kName).finished, "");
}

TEST(UndoneRecord, IsNotWrittenOverALink) {
    const TemporaryFolder folder;
    folder.Write("target", "text", 0600);
    ASSERT_EQ(symlink("target", (folder / (SString(kName) + ".undone")).CString()), 0);
    const Records records(folder / ".");
    UndoneRecord record(records, kName);
    record.Begin({});
    EXPECT_FALSE(record.IsWhole());
    EXPECT_EQ(MapFileRead(folder / "target"), "text");
}

}  // namespace
