#include "install/record/record.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "install/record/text.h"
#include "support/process/child_process.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "tests/temporary_folder.h"

namespace {

using change::ModeSet;
using change::ServerStarted;
using testing::MatchesRegex;

class Record : public testing::Test {
  protected:
    Record() {
        MakeDir(runs_, 0700);
        NameRecord(runs_);
    }
    ~Record() override { NameRecord(""); }

    SString Path() const {
        SStringList entries = ReadDir(runs_);
        return entries.Grep("/Z-[0-9]+$/").Get(0);
    }
    /// The programs of the lines "server", "end" for the last line, "?" for one that is no change.
    SStringList Told() const {
        SStringList told;
        for (const SString& line : Lines(MapFileRead(Path()))) {
            if (line == FormatLine()) continue;
            const auto read = ChangeFrom(line);
            const auto* started = read ? std::get_if<ServerStarted>(&read->change) : nullptr;
            const bool is_end = read && std::holds_alternative<change::RunEnded>(read->change);
            told.Push(started != nullptr ? started->program : is_end ? "end" : "?");
        }
        return told;
    }
    static void Tell(const SString& program) { RecordChange(ServerStarted{program}); }
    static void InChild(const auto& body) {
        const pid_t child = StartChild(body);
        waitpid(child, nullptr, 0);
    }

    TemporaryFolder folder_;
    SString runs_ = folder_ / "runs";
};

TEST_F(Record, IsBegunWithTheFirstChange) {
    EXPECT_TRUE(IsRecording());
    EXPECT_TRUE(ReadDir(runs_).IsEmpty());
    const mode_t mask = umask(0777);
    Tell("a");
    umask(mask);
    EXPECT_EQ(ReadDir(runs_).Count(), 1U);
    EXPECT_THAT(BaseName(Path(), "").Bytes(), MatchesRegex("[0-9]{8}T[0-9]{6}Z-" + std::to_string(getpid())));
    EXPECT_TRUE(MapFileRead(Path()).StartsWith(FormatLine().Bytes()));
    const auto status = Descriptor::Open(Path(), O_RDONLY).Stat();
    EXPECT_EQ(status->st_mode, S_IFREG | 0600U);
    EXPECT_EQ(status->st_nlink, 1U);
    RecordWithoutSync(ServerStarted{"b"});
    EndRecord(0);
    EXPECT_EQ(Told(), SStringList({"a", "b", "end"}));
}

TEST_F(Record, OfNothingIsNone) {
    EndRecord(0);
    EXPECT_TRUE(ReadDir(runs_).IsEmpty());
}

TEST_F(Record, IsWrittenByChildrenThatKeptNoDescriptor) {
    InChild([] { Tell("child"); });
    Tell("parent");
    InChild([] {
        const auto kept = Descriptor::Open("/dev/null", O_RDONLY);
        KeepOnly(kept);
        Tell("another");
    });
    EndRecord(0);
    EXPECT_EQ(Told(), SStringList({"child", "parent", "another", "end"}));
}

TEST_F(Record, HasTheLinesOfProcessesThatWriteAtOnceWhole) {
    constexpr int kEach = 200;
    const auto write = [] {
        for (int i = 0; i < kEach; ++i) RecordWithoutSync(ServerStarted{SString('x', 9000)});
    };
    const pid_t child = StartChild(write);
    write();
    waitpid(child, nullptr, 0);
    EXPECT_EQ(Told().Count(), 2U * kEach);
    EXPECT_FALSE(Told().Contains("?"));
}

TEST_F(Record, HasNoLineAfterOneThatAKillCut) {
    constexpr int kTimes = 25;
    for (int i = 0; i < kTimes; ++i) {
        NameRecord(folder_ / SString(i));
        MakeDir(folder_ / SString(i), 0700);
        runs_ = folder_ / SString(i);
        Tell("parent");
        const pid_t child = StartChild([] {
            while (true) RecordWithoutSync(ServerStarted{SString('x', 60000)});
        });
        usleep(static_cast<useconds_t>(1500 + 211 * i));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        Tell("after");
        SStringList told = Told();
        const SString last = told.Pop();
        EXPECT_FALSE(told.Contains("?"));
        EXPECT_TRUE(IsRecording() ? last == "after" : last != "after") << last[0];
    }
}

TEST_F(Record, IsWrittenFromAnyIdentity) {
    const AsUser nobody({65534, 65534, {65534}});
    ASSERT_TRUE(nobody.IsTaken());
    Tell("a");
    EXPECT_EQ(geteuid(), 65534U);
    EXPECT_EQ(RecordKey().Length(), 32U);
    EXPECT_EQ(geteuid(), 65534U);
    const AsRoot root;
    EXPECT_EQ(Told(), SStringList({"a"}));
}

TEST_F(Record, IsKeptOnlyWhereNobodyElseCouldWriteOrRead) {
    chmod(runs_.CString(), 0750);
    EXPECT_FALSE(IsRecording());
    Tell("a");
    EXPECT_EQ(RecordKey(), "");
    EXPECT_TRUE(ReadDir(runs_).IsEmpty());
}

TEST_F(Record, IsNotKeptInSomebodysDirectory) {
    ASSERT_EQ(chown(runs_.CString(), 65534, 0), 0);
    EXPECT_FALSE(IsRecording());
}

TEST_F(Record, IsNotKeptBehindALink) {
    const SString link = folder_ / "link";
    ASSERT_EQ(symlink(runs_.CString(), link.CString()), 0);
    NameRecord(link);
    EXPECT_FALSE(IsRecording());
}

TEST_F(Record, IsNotKeptWithoutADirectory) {
    for (const SString& directory : {SString(), folder_ / "missing", folder_.Write("file", "")}) {
        NameRecord(directory);
        EXPECT_FALSE(IsRecording()) << directory;
        Tell("a");
        EndRecord(0);
    }
    EXPECT_FALSE(EntryExists(folder_ / "missing"));
}

/// Files of this process and its children cannot grow past the limit meanwhile.
class Full {
  public:
    explicit Full(rlim_t size) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{size, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        handler_ = signal(SIGXFSZ, SIG_IGN);
    }
    ~Full() {
        setrlimit(RLIMIT_FSIZE, &before_);
        signal(SIGXFSZ, handler_);
    }

  private:
    rlimit before_{};
    sighandler_t handler_;
};

TEST_F(Record, IsOffForGoodOnceALineWasCut) {
    Tell("a");
    {
        const Full full(static_cast<rlim_t>(FileSize(Path())) + 10);
        Tell("cut");
    }
    EXPECT_FALSE(IsRecording());
    Tell("b");
    EndRecord(0);
    EXPECT_EQ(Told(), SStringList({"a", "?"}));
}

TEST_F(Record, IsOffForTheParentOnceAChildsLineWasCut) {
    Tell("a");
    InChild([this] {
        const Full full(static_cast<rlim_t>(FileSize(Path())) + 10);
        Tell("cut");
    });
    EXPECT_FALSE(IsRecording());
    EndRecord(0);
    EXPECT_EQ(Told(), SStringList({"a", "?"}));
}

TEST_F(Record, IsNotThereIfItsBeginningFails) {
    {
        const Full full(10);
        Tell("a");
    }
    EXPECT_FALSE(IsRecording());
    EXPECT_TRUE(ReadDir(runs_).IsEmpty());
}

TEST_F(Record, KeepsFilesBeside) {
    const SString path = folder_.Write("file", SString('x', 3000000), 0640);
    const auto file = Descriptor::Open(path, O_RDONLY);
    lseek(file.Get(), 100, SEEK_SET);
    const auto kept = KeepBesideRecord(file, "copy");
    EXPECT_EQ(kept.kept, "copy");
    EXPECT_EQ(kept.access, (change::Access{getuid(), file.Stat()->st_gid, {0640}, ""}));
    Tell("a");
    EXPECT_EQ(MapFileRead(Path() + ".kept/copy"), MapFileRead(path));
    EXPECT_EQ(Descriptor::Open(Path() + ".kept", O_RDONLY).Stat()->st_mode, S_IFDIR | 0700U);
    EXPECT_EQ(Descriptor::Open(Path() + ".kept/copy", O_RDONLY).Stat()->st_mode, S_IFREG | 0600U);
}

TEST_F(Record, IsOffIfAFileCannotBeKept) {
    const auto file = Descriptor::Open(folder_.Write("file", SString('x', 1000)), O_RDONLY);
    {
        const Full full(10);
        EXPECT_EQ(KeepBesideRecord(file, "copy").kept, "");
    }
    EXPECT_FALSE(IsRecording());
}

TEST_F(Record, HasOneKey) {
    const SString key = RecordKey();
    EXPECT_EQ(key.Length(), 32U);
    EXPECT_EQ(RecordKey(), key);
    Tell("a");
    EXPECT_EQ(MapFileRead(Path() + ".kept/key"), key);
}

}  // namespace
