#include "support/database/database_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/system/environment.h"
#include "support/system/identity.h"
#include "tests/data_directory.h"

namespace {

constexpr uid_t kOwner = 54321;
constexpr gid_t kGroup = 54322;

const DatabaseFormat kFormat = {"77", "CREATE TABLE t (x); INSERT INTO t VALUES ('kept')", "DELETE", "FULL"};
const DatabaseFormat kWithLog = {"77", kFormat.schema, "WAL", "NORMAL"};
const DatabaseFormat kOther = {"78", kFormat.schema, "DELETE", "FULL"};

struct stat Facts(const SString& path) {
    struct stat facts {};
    EXPECT_EQ(lstat(path.CString(), &facts), 0) << path;
    return facts;
}

class DatabaseFileTest : public testing::Test {
  protected:
    DatabaseState StateForReading(const DatabaseFormat& format = kFormat) {
        return OpenForReading(path_, format).state;
    }
    DatabaseState StateForWriting(const DatabaseFormat& format = kFormat) {
        return OpenForWriting(path_, format).state;
    }
    bool Writes(const DatabaseFormat& format = kFormat) {
        const OpenedDatabase database = OpenForWriting(path_, format);
        return database.connection && database.connection->Execute("INSERT INTO t VALUES (1)");
    }

    DataDirectory data_;
    SString path_ = DatabasePath("Module");
};

TEST_F(DatabaseFileTest, StandsInConfig) {
    EXPECT_EQ(path_, data_.Path() + "/config/Module");
    for (const SString& name : {SString(""), SString("."), SString(".."), SString("a/b"), SString("../x"),
                                SString(std::string("a\0b", 3))}) {
        EXPECT_TRUE(DatabasePath(name).IsEmpty()) << name;
        EXPECT_EQ(OpenForReading(DatabasePath(name), kFormat).state, DatabaseState::Failed);
        EXPECT_EQ(OpenForWriting(DatabasePath(name), kFormat).state, DatabaseState::Failed);
    }
    PutEnv("TernHarbor", "");
    EXPECT_TRUE(DatabasePath("Module").IsEmpty());
}

TEST_F(DatabaseFileTest, ReadingMakesNothing) {
    EXPECT_EQ(StateForReading(), DatabaseState::Missing);
    EXPECT_EQ(data_.Listing(), "");
    data_.WriteConfig("Module", "");  // made by a run that was killed before it wrote anything
    EXPECT_EQ(StateForReading(), DatabaseState::Missing);
    EXPECT_EQ(MapFileRead(path_), "");
}

TEST_F(DatabaseFileTest, WritingMakesTheFileWithItsOwnerAndMode) {
    data_.GiveTo(kOwner, kGroup);
    for (const mode_t mask : {0000U, 0007U, 0077U}) {
        const mode_t before = umask(mask);
        {
            const AsUser owner({kOwner, kGroup, {kGroup}});
            EXPECT_TRUE(Writes());
        }
        umask(before);
        const struct stat facts = Facts(path_);
        EXPECT_EQ(facts.st_mode, static_cast<mode_t>(S_IFREG | 0640));
        EXPECT_EQ(facts.st_uid, kOwner);
        EXPECT_EQ(facts.st_gid, kGroup);
        EXPECT_EQ(data_.Listing(), "Module");
        EXPECT_EQ(StateForReading(), DatabaseState::Ready);
        RemoveFile(path_);
    }
}

TEST_F(DatabaseFileTest, LeavesNothingBesideTheFile) {
    for (const DatabaseFormat& format : {kFormat, kWithLog}) {
        EXPECT_TRUE(Writes(format));
        EXPECT_EQ(data_.Listing(), "Module");
    }
    EXPECT_TRUE(Writes(kFormat));  // no longer with a log
    EXPECT_EQ(StateForReading(), DatabaseState::Ready);
    EXPECT_EQ(data_.Listing(), "Module");
}

TEST_F(DatabaseFileTest, IsClosedOnExec) {
    const OpenedDatabase database = OpenForWriting(path_, kWithLog);
    ASSERT_TRUE(database.connection->Execute("INSERT INTO t VALUES (1)"));
    int open_files = 0;
    for (int fd = 3; fd < 256; ++fd) {
        char target[PATH_MAX] = "";
        const SString link = "/proc/self/fd/" + SString(fd);
        if (readlink(link.CString(), target, sizeof target - 1) > 0 &&
            SString(target).StartsWith(data_.Config("Module").Bytes())) {
            ++open_files;
            EXPECT_NE(fcntl(fd, F_GETFD) & FD_CLOEXEC, 0) << target;
        }
    }
    EXPECT_GE(open_files, 2);  // the database and its log
}

TEST_F(DatabaseFileTest, FollowsALink) {
    ASSERT_EQ(symlink("Elsewhere", path_.CString()), 0);
    EXPECT_EQ(StateForReading(), DatabaseState::Missing);
    EXPECT_EQ(StateForWriting(), DatabaseState::Failed);  // O_EXCL: a dangling link is not followed
    EXPECT_EQ(data_.Listing(), "Module");
    EXPECT_EQ(OpenForWriting(data_.Config("Elsewhere"), kFormat).state, DatabaseState::Ready);
    EXPECT_EQ(StateForReading(), DatabaseState::Ready);
    EXPECT_TRUE(Writes());
    EXPECT_EQ(data_.Listing(), "Elsewhere Module");
}

TEST_F(DatabaseFileTest, OnlyARegularFileOfItsFormatWillDo) {
    const struct {
        const char* what;
        void (*make)(const SString& path);
    } cases[] = {
        {"a directory", [](const SString& path) { MakeDir(path, 0750); }},
        {"a FIFO", [](const SString& path) { mkfifo(path.CString(), 0640); }},
        {"a device", [](const SString& path) { EXPECT_EQ(symlink("/dev/zero", path.CString()), 0); }},
        {"text", [](const SString& path) { std::ofstream(path.Bytes()) << SString('x', 5000); }},
        {"another format", [](const SString& path) { OpenForWriting(path, kOther); }},
        {"a stranger's database",
         [](const SString& path) {
             std::ofstream(path.Bytes()).flush();
             EXPECT_TRUE(sqlite::Connection::Open(path, sqlite::Mode::Shared)->Execute("CREATE TABLE t (x)"));
         }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        c.make(path_);
        const struct stat before = Facts(path_);
        EXPECT_EQ(StateForReading(), DatabaseState::Foreign);
        EXPECT_EQ(StateForWriting(), DatabaseState::Foreign);
        EXPECT_EQ(Facts(path_).st_size, before.st_size);
        EXPECT_EQ(Facts(path_).st_mtim.tv_nsec, before.st_mtim.tv_nsec);
        EXPECT_EQ(data_.Listing(), "Module");
        std::filesystem::remove_all(path_.Bytes());
    }
    PutEnv("TernHarbor", data_.Path() + "/nowhere");
    EXPECT_EQ(OpenForReading(DatabasePath("Module"), kFormat).state, DatabaseState::Missing);
    EXPECT_EQ(OpenForWriting(DatabasePath("Module"), kFormat).state, DatabaseState::Failed);
}

/// Makes the database in another process once the pipe is closed; the exit status is 0 if it could.
pid_t MakeInChild(const SString& path, const DatabaseFormat& format, const int (&start)[2]) {
    const pid_t child = fork();
    if (child != 0) return child;
    char byte = 0;
    close(start[1]);
    const bool has_started = read(start[0], &byte, 1) == 0;
    _exit(has_started && OpenForWriting(path, format).state == DatabaseState::Ready ? 0 : 1);
}

TEST_F(DatabaseFileTest, TwoProcessesMayMakeItAtTheSameMoment) {
    for (int round = 0; round < 60; ++round) {
        const DatabaseFormat& format = round % 2 == 0 ? kWithLog : kFormat;
        int start[2];
        ASSERT_EQ(pipe(start), 0);
        const pid_t children[] = {MakeInChild(path_, format, start), MakeInChild(path_, format, start)};
        close(start[0]);
        close(start[1]);
        for (const pid_t child : children) {
            int status = 0;
            ASSERT_EQ(waitpid(child, &status, 0), child);
            EXPECT_EQ(status, 0) << "round " << round;
        }
        EXPECT_EQ(*OpenForReading(path_, format).connection->Value("SELECT count(*) FROM t"), "1");
        std::filesystem::remove_all(data_.Config("").Bytes());
        MakeDir(data_.Config(""), 0750);
    }
}

// A run on a database that may only be read must not leave anything that keeps the next one from writing.
TEST_F(DatabaseFileTest, ReadOnlyIsReadAndLeftAsItIs) {
    data_.GiveTo(kOwner, kGroup);
    const AsUser owner({kOwner, kGroup, {kGroup}});
    ASSERT_TRUE(Writes(kWithLog));
    const SString directory = data_.Config("");
    const struct {
        SString path;
        mode_t read_only;
        mode_t before;
    } cases[] = {{path_, 0440, 0640}, {directory, 0550, 0750}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path.CString());
        ASSERT_EQ(chmod(c.path.CString(), c.read_only), 0);
        {
            const OpenedDatabase database = OpenForReading(path_, kWithLog);
            ASSERT_EQ(database.state, DatabaseState::Ready);
            EXPECT_TRUE(database.is_snapshot);
            EXPECT_EQ(*database.connection->Value("SELECT x FROM t"), "kept");
        }
        EXPECT_EQ(StateForWriting(kWithLog), DatabaseState::Failed);
        EXPECT_EQ(data_.Listing(), "Module");
        ASSERT_EQ(chmod(c.path.CString(), c.before), 0);
        EXPECT_TRUE(Writes(kWithLog));
        EXPECT_FALSE(OpenForReading(path_, kWithLog).is_snapshot);
    }
    ASSERT_EQ(chmod(path_.CString(), 0), 0);
    EXPECT_EQ(StateForReading(kWithLog), DatabaseState::Failed);
    EXPECT_EQ(StateForWriting(kWithLog), DatabaseState::Failed);
}

TEST_F(DatabaseFileTest, ReadOnlyIsStillReadWithWorkBesideIt) {
    const OpenedDatabase writer = OpenForWriting(path_, kWithLog);
    ASSERT_TRUE(writer.connection->Execute("INSERT INTO t VALUES ('in the log')"));
    ASSERT_EQ(chmod(path_.CString(), 0440), 0);
    const OpenedDatabase reader = OpenForReading(path_, kWithLog);
    ASSERT_EQ(reader.state, DatabaseState::Ready);
    EXPECT_EQ(*reader.connection->Value("SELECT count(*) FROM t"), "2");
}

}  // namespace
