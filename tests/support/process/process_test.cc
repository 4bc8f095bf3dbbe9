#include "support/process/process.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <utility>

#include "support/system/descriptor.h"
#include "tests/recorded.h"

namespace {

TEST(Ports, AreReadFromRecordedOutputs) {
    EXPECT_EQ(PortsFromNetstat(Recorded("netstat-sunos")), (SStringList{"25", "79", "21", "111"}));
    EXPECT_EQ(PortsFromSs(Recorded("ss-debian")),
              (SStringList{"631", "53", "110", "2024", "143", "79", "25"}));
    EXPECT_EQ(PortsFromLinuxNetstat(Recorded("netstat-debian")),
              (SStringList{"631", "53", "110", "2024", "143", "79", "25"}));
}

struct Line {
    SStringList (*parse)(SStringList);
    SString line;
    SStringList ports;
};

TEST(Ports, AreThoseOfListeningSockets) {
    const Line cases[] = {
        {PortsFromNetstat, "tcp 0 0 *.25 *.* LISTEN\n", {"25"}},
        {PortsFromNetstat, "tcp 0 0 *.25 *.* LISTEN", {"25"}},
        {PortsFromNetstat, "tcp 0 0 *.25 *.* ESTABLISHED\n", {}},
        {PortsFromNetstat, "udp 0 0 *.25 *.* LISTEN\n", {}},
        {PortsFromNetstat, " tcp 0 0 *.25 *.* LISTEN\n", {}},
        {PortsFromNetstat, "tcp 0 0 127.0.0.1.2525  *.*  0 LISTEN  \n", {"2525"}},
        {PortsFromNetstat, "tcp 0 0 *:25 *:* LISTEN\n", {}},
        {PortsFromNetstat, "\n", {}},
        {PortsFromSs, "LISTEN 0 128 [fe80::1]%eth0:25 [::]:*\n", {"25"}},
        {PortsFromSs, "LISTEN 0 128 127.0.0.53%lo:53 0.0.0.0:*    \n", {"53"}},
        {PortsFromSs, "LISTEN 0 128 *:25 *:*\n", {"25"}},
        {PortsFromSs, "ESTAB 0 0 127.0.0.1:110 127.0.0.1:60134\n", {}},
        {PortsFromSs, "LISTEN 0 128 /run/socket 1234 * 0\n", {}},
        {PortsFromSs, "State Recv-Q Send-Q Local Address:Port Peer Address:Port\n", {}},
        {PortsFromLinuxNetstat, "tcp6 0 0 :::25 :::* LISTEN \n", {"25"}},
        {PortsFromLinuxNetstat, "tcp 0 0 127.0.0.1:110 127.0.0.1:25 ESTABLISHED\n", {}},
        {PortsFromLinuxNetstat, "udp 0 0 0.0.0.0:25 0.0.0.0:* LISTEN\n", {}},
    };
    for (const Line& line : cases) EXPECT_EQ(line.parse(line.line), line.ports) << line.line;
}

TEST(Processes, AreReadFromARecordedOutput) {
    EXPECT_EQ(ProcessesFromPs(Recorded("ps-debian")),
              (SStringList{"1 sh", "4 python3", "45 inetd", "46 sendmail", "47 Server", "48 tern.harbor",
                           "49 s\xc3\xa9rvice", "50 gone", "51 sh", "52 ps"}));
}

TEST(ProcessUsers, AreReadFromARecordedOutput) {
    EXPECT_EQ(UsersFromPs(Recorded("ps-users-debian")),
              (SStringList{"1 0", "71 0", "76 1001", "78 150", "79 0", "81 0"}));
}

TEST(ProcessUsers, AreLinesOfTwoNumbers) {
    const std::pair<SString, SStringList> cases[] = {
        {"1 0", "1 0"},    {"  12345 65534  \n", "12345 65534"},
        {"1\t0\n", "1 0"}, {"  PID  RUID\n", {}},
        {"1 root\n", {}},  {"1 0 0\n", {}},
        {"1\n", {}},       {"\n", {}},
        {"1 -2\n", {}},
    };
    for (const auto& [line, users] : cases) EXPECT_EQ(UsersFromPs(line), users) << line;
}

TEST(Processes, AreTheNumberedLinesAfterTheHeading) {
    const std::pair<SStringList, SStringList> cases[] = {
        {{"  PID TTY TIME CMD\n", "  123 ?  0:01 sendmail\n"}, {"123 sendmail"}},
        {{" 12 tty 0:00 CMD\n", "123 ? 0:01 sendmail"},
         {"123 sendmail"}},  // a heading, whatever it looks like
        {{"heading\n", "no number here\n", "\n", "7\n"}, {}},
        {{"heading\n", "8 ? 0:00 s\xc3\xa9nd\xff\n"}, {"8 s\xc3\xa9nd\xff"}},
        {{"heading\n"}, {}},
        {{}, {}},
    };
    for (const auto& [lines, processes] : cases) EXPECT_EQ(ProcessesFromPs(lines), processes);
}

TEST(ReadProcessInfo, FindsThisProcess) {
    const SStringList entries = ReadProcessInfo();
    bool found = false;
    for (const SString& entry : entries) found = found || entry == SString(getpid()) + " support_test";
    EXPECT_TRUE(found) << entries.Join("\n");
}

TEST(BoundSockets, FindsAListener) {
    const Descriptor listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    ASSERT_EQ(bind(listener.Get(), generic, size), 0);
    ASSERT_EQ(getsockname(listener.Get(), generic, &size), 0);
    ASSERT_EQ(listen(listener.Get(), 1), 0);
    EXPECT_TRUE(BoundSockets().Contains(SString(ntohs(address.sin_port))));
}

TEST(ProcessesNamed, BindsTheNameToTheWholeName) {
    const SStringList entries = {"20 inetd", "21 xinetd",   "22 inetd2", "23 popd",    "24 popd|",
                                 "25 a/b",   "26 sendmail", "27 abb",    "28 (sd-pam)"};
    const std::pair<SString, SStringList> cases[] = {
        {"inetd", {"20 inetd"}},
        {"popd", {"23 popd"}},
        {"popd|", {"23 popd"}},
        {"popd|inetd", {"20 inetd", "23 popd"}},
        {"popd\\|", {"24 popd|"}},
        {"a/b", {"25 a/b"}},
        {"a\\/b", {"25 a/b"}},
        {"sen.*l", {"26 sendmail"}},
        {"ab|abb", {"27 abb"}},
        {"20 inetd", {}},
        {".* inetd", {}},
        {"netd", {}},
        {"inet", {}},
        {"INETD", {}},
        {"inetd$", {"20 inetd"}},
        {"^inetd", {"20 inetd"}},
        {"inetd\n", {}},
        {"inetd\\", {}},
        {"inetd)|(?:sendmail", {}},
        {"x)|(inetd", {}},
        {"inetd(", {}},
        {"[inetd", {}},
        {"inetd(?#", {}},
        {"(?x)inetd #", {}},
        {"(?i)INETD", {"20 inetd"}},
        {"inetd\\Q", {}},
        {"inet(*ACCEPT)", {}},
        {"x(*ACCEPT)", {}},
        {"(?=x)", {}},
        {"", {}},
        {SString(std::string("inetd\0", 6)), {}},
        {"(a*)*(a*)*(a*)*x", {}},
    };
    for (const auto& [name, named] : cases) EXPECT_EQ(ProcessesNamed(entries, name), named) << name;
}

TEST(SignalProcesses, LeavesTheSystemsFirstProcessesAlone) {
    EXPECT_FALSE(SignalProcesses({"1 init", "2 x", "10 x", "0 x", "-1 x", "-20 x", "x"}, 0));
    EXPECT_FALSE(SignalProcesses({}, 0));
    EXPECT_TRUE(SignalProcesses({"1 init", SString(getpid()) + " x"}, 0));
}

TEST(SignalProcesses, NeverWrapsAnId) {
    const long id = getpid();
    EXPECT_FALSE(SignalProcesses({SString(id + (1L << 32)) + " x", SString(id - (1L << 32)) + " x",
                                  "18446744073709551616" + SString(id) + " x", "99999999999999999999 x"},
                                 0));
}

/// A process of this name that waits to be signalled. It ends with its scope. Its effective user is root, as
/// of a set-user-ID program.
class NamedProcess {
  public:
    explicit NamedProcess(const SString& name, uid_t real_user = 0) {
        int ready[2] = {-1, -1};
        EXPECT_EQ(pipe(ready), 0);
        id_ = fork();
        if (id_ == 0) {
            prctl(PR_SET_NAME, name.CString());
            if (setreuid(real_user, 0) != 0) _exit(1);
            close(ready[0]);
            close(ready[1]);
            for (;;) pause();
        }
        close(ready[1]);
        char none = 0;
        EXPECT_EQ(read(ready[0], &none, 1), 0);  // until the child has closed its end, and so has its name
        close(ready[0]);
    }
    ~NamedProcess() {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
    }
    NamedProcess(const NamedProcess&) = delete;
    NamedProcess& operator=(const NamedProcess&) = delete;

    /// The signal that ended it, once it has ended.
    int WaitForSignal() {
        int status = 0;
        EXPECT_EQ(waitpid(id_, &status, 0), id_);
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }
    bool IsRunning() { return waitpid(id_, nullptr, WNOHANG) == 0; }

  private:
    pid_t id_ = -1;
};

TEST(KillProgram, ReachesProcessesOfExactlyTheName) {
    const SString name = "kp" + SString(getpid());
    NamedProcess named(name);
    NamedProcess longer("x" + name);
    EXPECT_TRUE(KillProgram(name, SIGUSR1));
    EXPECT_EQ(named.WaitForSignal(), SIGUSR1);
    EXPECT_TRUE(longer.IsRunning());
    EXPECT_FALSE(KillProgram(name, SIGUSR1));
}

TEST(KillProgram, RefusesPunctuation) {
    for (const char* name : {"", " ", ".", ".*", "...", "|", "<>"}) {
        EXPECT_FALSE(KillProgram(name, 0)) << name;
        EXPECT_FALSE(KillProgramOf("0", name, 0)) << name;
    }
}

TEST(KillProgramOf, ReachesOnlyTheseUsersProcesses) {
    const SString name = "ko" + SString(getpid());
    NamedProcess roots(name);
    NamedProcess users(name, 54321);
    EXPECT_FALSE(KillProgramOf({"54322", "5432", "4321"}, name, SIGUSR1));
    EXPECT_TRUE(KillProgramOf({"54322", "0"}, name, SIGUSR1));
    EXPECT_EQ(roots.WaitForSignal(), SIGUSR1);
    EXPECT_TRUE(users.IsRunning());
    EXPECT_TRUE(KillProgramOf("54321", name, SIGUSR1));
    EXPECT_EQ(users.WaitForSignal(), SIGUSR1);
}

TEST(ProcessesOf, CountsNoProcessThatHasEnded) {
    const SString id(getpid());
    EXPECT_EQ(ProcessesOf({id + " x", "4194304 gone"}, {"0"}), SStringList(id + " x"));
    EXPECT_TRUE(ProcessesOf({id + " x"}, {}).IsEmpty());
    EXPECT_TRUE(ProcessesOf({}, {"0"}).IsEmpty());
}

}  // namespace
