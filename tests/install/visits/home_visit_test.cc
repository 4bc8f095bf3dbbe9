#include "install/visits/home_visit.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>

#include "support/system/descriptor.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

const Identity kUser = {2001, 2001, {2001}};
const SString kNotice = "##### Notice #####\n";

class HomeVisit : public testing::Test {
  protected:
    HomeVisit() {
        chmod((folder_ / "").CString(), 0755);
        MakeDir(Home(), 0700);
        Own(Home());
    }

    SString Home() const { return folder_ / "home"; }
    SString In(const SString& name) const { return Home() + "/" + name; }
    void Own(const SString& path) const { ASSERT_EQ(lchown(path.CString(), kUser.uid, kUser.gid), 0); }
    SString Put(const SString& name, const SString& text, mode_t mode = 0600) const {
        SString path = folder_.Write("home/" + name, text, mode);
        Own(path);
        return path;
    }
    void Link(const SString& target, const SString& name) const {
        ASSERT_EQ(symlink(target.CString(), In(name).CString()), 0);
        Own(In(name));
    }
    HomeFindings VisitAs(const Identity& user, const SString& home) const {
        ManyUsers users;
        return VisitHome(home, user, kNotice, &users, &progress_);
    }
    HomeFindings Visit() const { return VisitAs(kUser, Home()); }
    SStringList FingerLines() const { return Visit().finger_lines; }

    TemporaryFolder folder_;
    mutable VisitProgress progress_{};
};

TEST_F(HomeVisit, ReadsProjectAndPlan) {
    Put(".project", "Mail\n");
    Put(".plan", "Monday: rest\n\nTuesday: work\n");
    EXPECT_EQ(FingerLines(), SStringList({"Project:", "-------", "Mail", "", "Plan:", "----", "Monday: rest",
                                          "", "Tuesday: work", ""}));
}

TEST_F(HomeVisit, ReadsEachForItself) {
    EXPECT_TRUE(FingerLines().IsEmpty());
    Put(".project", "");
    EXPECT_TRUE(FingerLines().IsEmpty());
    Put(".plan", "\n");
    EXPECT_EQ(FingerLines(), SStringList({"Plan:", "----", "", ""}));
}

TEST_F(HomeVisit, FillsANoticeThatAKilledVisitorLeftEmpty) {
    Put(".forward.NOTICE", "");
    Visit();
    EXPECT_EQ(MapFileRead(In(".forward.NOTICE")), kNotice);
    Put(".forward.NOTICE", "the user's\n");
    Visit();
    EXPECT_EQ(MapFileRead(In(".forward.NOTICE")), "the user's\n");
}

TEST_F(HomeVisit, FillsNoEmptyNoticeOfAnothersOrWithAnotherName) {
    Put(".forward.NOTICE", "");
    ASSERT_EQ(link(In(".forward.NOTICE").CString(), In("other").CString()), 0);
    Visit();
    EXPECT_EQ(MapFileRead(In("other")), "");
    RemoveFile(In("other"));
    ASSERT_EQ(chown(In(".forward.NOTICE").CString(), 33, 33), 0);
    Visit();
    EXPECT_EQ(MapFileRead(In(".forward.NOTICE")), "");
}

TEST_F(HomeVisit, TellsWhatItLooksAt) {
    Visit();
    EXPECT_EQ(progress_.Place(), Home() + "//.forward.NOTICE");
    EXPECT_FALSE(progress_.IsBehindLink());
    progress_.FollowLink();
    EXPECT_TRUE(progress_.IsBehindLink());
    progress_.LookAt(SString('x', 10'000));
    EXPECT_EQ(progress_.Place(), SString('x', PATH_MAX - 1));
    EXPECT_FALSE(progress_.IsBehindLink());
}

TEST_F(HomeVisit, KeepsEveryCharacterOfALine) {
    Put(".plan", "a \xff\x1b[2J\r\n\tno line end");
    EXPECT_EQ(FingerLines(), SStringList({"Plan:", "----", "a \xff\x1b[2J\r", "\tno line end", ""}));
}

TEST_F(HomeVisit, ReadsWholeLinesOfTheFirstMebibyteOnly) {
    constexpr size_t kMebibyte = size_t{1} << 20;
    const SString line = SString('x', 1023) + "\n";
    SString text;
    for (int i = 0; i < 1023; ++i) text += line;
    const struct {
        const char* what;
        SString end;
        size_t lines;
    } cases[] = {
        {"exactly one, whole", line, 1024},
        {"exactly one, without its line end", SString('y', 1024), 1024},
        {"one byte more, the last line ends at it", line + "y", 1024},
        {"one byte more, within the last line", SString('y', 1024) + "\n", 1023},
        {"much more", SString('y', 3 * kMebibyte), 1023},
    };
    for (const auto& c : cases) {
        Put(".plan", text + c.end);
        EXPECT_EQ(FingerLines().Count(), c.lines + 3) << c.what;
    }
    Put(".plan", SString('y', kMebibyte + 1));
    EXPECT_TRUE(FingerLines().IsEmpty());
}

TEST_F(HomeVisit, FollowsALinkToAnotherFileOfTheUsersOnly) {
    Put("mine", "mine\n");
    Link("mine", ".plan");
    const SString secret = folder_.Write("secret", "secret\n", 0640);
    Link(secret, ".project");
    EXPECT_EQ(FingerLines(), SStringList({"Plan:", "----", "mine", ""}));
}

TEST_F(HomeVisit, UsesTheUsersGroups) {
    const SString path = folder_.Write("shared", "shared\n", 0640);
    ASSERT_EQ(chown(path.CString(), 0, 2002), 0);
    Link(path, ".plan");
    EXPECT_TRUE(FingerLines().IsEmpty());
    const Identity member = {kUser.uid, kUser.gid, {kUser.gid, 2002}};
    EXPECT_EQ(VisitAs(member, Home()).finger_lines.Count(), 4U);
}

TEST_F(HomeVisit, DoesNotPassThroughProcsLinks) {
    // What this process has open could be reached there, whatever the directories above it allow.
    const SString path = folder_.Write("closed", "secret\n", 0644);
    const Descriptor open = Descriptor::Open(path, O_RDONLY);
    ASSERT_TRUE(open);
    Link("/proc/self/fd/" + SString(open.Get()), ".plan");
    EXPECT_TRUE(FingerLines().IsEmpty());
}

TEST_F(HomeVisit, DoesNotGoToAHomeThroughProcsLinks) {
    for (const auto& [name, mode] : {std::pair("closed", 0700), std::pair("closed/home", 0755)}) {
        ASSERT_TRUE(MakeDir(folder_ / name, static_cast<mode_t>(mode)));
    }
    folder_.Write("closed/home/.plan", "secret\n", 0644);
    const Descriptor here = Descriptor::Open(".", O_RDONLY);
    ASSERT_EQ(chdir((folder_ / "closed/home").CString()), 0);
    const HomeFindings findings = VisitAs(kUser, "/proc/self/cwd");
    ASSERT_EQ(fchdir(here.Get()), 0);
    EXPECT_TRUE(findings.finger_lines.IsEmpty());
}

TEST_F(HomeVisit, OpensNothingButRegularFiles) {
    ASSERT_EQ(mkfifo(In(".plan").CString(), 0666), 0);
    ASSERT_EQ(mkdir(In(".project").CString(), 0777), 0);
    ASSERT_EQ(mkdir(In(".forward").CString(), 0777), 0);
    const HomeFindings findings = Visit();
    EXPECT_TRUE(findings.finger_lines.IsEmpty());
    EXPECT_FALSE(findings.has_forward);
    ASSERT_TRUE(RemoveFile(In(".plan")));
    Link("/dev/zero", ".plan");
    EXPECT_TRUE(FingerLines().IsEmpty());
}

TEST_F(HomeVisit, FindsARegularForwardFile) {
    EXPECT_FALSE(Visit().has_forward);
    Put(".forward", "");
    EXPECT_TRUE(Visit().has_forward);
}

TEST_F(HomeVisit, LeavesANoticeOfTheUsersOwn) {
    const mode_t before = umask(007);
    Visit();
    umask(before);
    struct stat status = {};
    ASSERT_EQ(lstat(In(".forward.NOTICE").CString(), &status), 0);
    EXPECT_EQ(status.st_uid, kUser.uid);
    EXPECT_EQ(status.st_gid, kUser.gid);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    EXPECT_EQ(MapFileRead(In(".forward.NOTICE")), kNotice);
    EXPECT_EQ(geteuid(), 0U);
    EXPECT_EQ(getegid(), 0U);
}

TEST_F(HomeVisit, LeavesTheNoticeWhereAnythingStandsAlone) {
    Put(".forward.NOTICE", "old\n");
    Visit();
    EXPECT_EQ(MapFileRead(In(".forward.NOTICE")), "old\n");
    ASSERT_TRUE(RemoveFile(In(".forward.NOTICE")));
    Link("nowhere", ".forward.NOTICE");
    Visit();
    EXPECT_FALSE(EntryExists(In("nowhere")));
}

TEST_F(HomeVisit, CannotWriteWhereTheUserCannot) {
    ASSERT_EQ(chown(Home().CString(), 0, 0), 0);
    ASSERT_EQ(chmod(Home().CString(), 0755), 0);
    Put(".plan", "mine\n");
    EXPECT_EQ(FingerLines().Count(), 4U);
    EXPECT_FALSE(EntryExists(In(".forward.NOTICE")));
}

TEST_F(HomeVisit, TakesAHomeWithASlashAtItsEnd) {
    Put(".plan", "mine\n");
    EXPECT_EQ(VisitAs(kUser, Home() + "/").finger_lines.Count(), 4U);
    EXPECT_TRUE(FileExists(In(".forward.NOTICE")));
}

TEST_F(HomeVisit, LeavesAloneWhatIsNoHome) {
    Put(".plan", "mine\n");
    const SString missing = folder_ / "missing";
    for (const SString& home : {SString(), SString("home"), SString("./"), missing}) {
        EXPECT_TRUE(VisitAs(kUser, home).finger_lines.IsEmpty()) << home;
    }
    // These ids mean "as it is" to the system: root's files would be read for the user.
    const Identity nobody = {4294967295U, 2001, {2001}};
    const Identity no_group = {2001, 4294967295U, {}};
    EXPECT_TRUE(VisitAs(nobody, Home()).finger_lines.IsEmpty());
    EXPECT_TRUE(VisitAs(no_group, Home()).finger_lines.IsEmpty());
    EXPECT_FALSE(EntryExists(In(".forward.NOTICE")));
}

/// From here on the kernel answers the system call openat2 with this error, in this process.
void RefuseOpenat2(unsigned error) {
    sock_filter filter[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat2, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program = {std::size(filter), filter};
    if (prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) _exit(1);
}

TEST_F(HomeVisit, ReadsWithoutOpenat2WhereThatIsUnknownOnly) {
    Put(".project", "Mail\n");
    Put("mine", "mine\n");
    Link("mine", ".plan");
    const struct {
        unsigned error;
        int lines;  // of .project: a link is not followed then
    } cases[] = {{ENOSYS, 4}, {EPERM, 4}, {EACCES, 0}};
    for (const auto& c : cases) {
        const auto visit = [&] {
            RefuseOpenat2(c.error);
            _exit(100 + static_cast<int>(FingerLines().Count()));
        };
        EXPECT_EXIT(visit(), testing::ExitedWithCode(100 + c.lines), "") << c.error;
    }
}

// Who has a lease on a file makes others wait for 45 seconds as they open it.
TEST_F(HomeVisit, WaitsForNobodyWhoHoldsAFile) {
    const SString path = Put(".plan", "mine\n");
    const auto visit = [&](bool is_openat2_known) {
        signal(SIGIO, SIG_IGN);  // asks for the lease
        const Descriptor held = Descriptor::Open(path, O_WRONLY);
        if (fcntl(held.Get(), F_SETLEASE, F_WRLCK) != 0) _exit(1);
        if (!is_openat2_known) RefuseOpenat2(ENOSYS);
        _exit(100 + static_cast<int>(FingerLines().Count()));
    };
    EXPECT_EXIT(visit(true), testing::ExitedWithCode(100), "");
    EXPECT_EXIT(visit(false), testing::ExitedWithCode(100), "");
}

}  // namespace
