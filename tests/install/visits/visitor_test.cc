// The visitor, at homes of logins that every Debian host has. A home that does not answer is a visitor that
// is stopped here; the scenarios have one on a file system that hangs.
#include "install/visits/visitor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "install/accounts/login_index.h"
#include "support/process/child_process.h"
#include "support/system/environment.h"
#include "tests/install/accounts/home_of_login.h"

namespace {

using std::chrono::milliseconds;

/// The processes that this one has started and that have not ended (Linux).
std::vector<pid_t> Children() {
    const SString id = ProcessIdString();
    std::ifstream list(("/proc/self/task/" + id + "/children").Bytes());
    std::vector<pid_t> children;
    for (pid_t child = 0; list >> child;) children.push_back(child);
    return children;
}

class VisitorTest : public testing::Test {
  protected:
    VisitorTest() {
        chmod((folder_ / "").CString(), 0755);
        logins_.Refresh();
    }

    VisitRequest Request(const SString& login) {
        const SString home = MakeHome(folder_, login);
        return {folder_ / ("maildrop-" + login), home, *logins_.Find(login)};
    }
    VisitRequest WithPlan(const SString& login) {
        VisitRequest request = Request(login);
        folder_.Write("home-" + login + "/.plan", login + "'s plan\n");
        return request;
    }

    TemporaryFolder folder_;
    LoginIndex logins_;
};

TEST_F(VisitorTest, AnswersInTheOrderOfTheRequests) {
    Visitor visitor("mail.example.com", 8);
    visitor.Send(WithPlan("games"));
    visitor.Send(WithPlan("man"));
    folder_.Write("home-man/.forward", "");
    folder_.Write("maildrop-man", "", 0600);
    const VisitAnswer games = visitor.Next();
    EXPECT_EQ(games.end, VisitEnd::Visited);
    EXPECT_EQ(games.finger_info, "Plan:\r\n----\r\ngames's plan\r\n");
    const VisitAnswer man = visitor.Next();
    EXPECT_EQ(man.finger_info, "Plan:\r\n----\r\nman's plan\r\n");
    EXPECT_TRUE(visitor.Reminders().IsEmpty());
    EXPECT_TRUE(IsRegular(folder_ / "home-man/.forward.NOTICE"));
    EXPECT_EQ(FileOwner(folder_ / "home-man/.forward.NOTICE"), "man");
}

TEST_F(VisitorTest, TellsWhatItFindsAtTheMaildrop) {
    Visitor visitor("mail.example.com", 8);
    VisitRequest request = Request("games");
    ASSERT_EQ(symlink("elsewhere", request.maildrop.CString()), 0);
    visitor.Send(request);
    EXPECT_EQ(visitor.Next().maildrop, Maildrop::Suspicious);
}

TEST_F(VisitorTest, HasRootsRightsAtEachMaildropWhoeverStartsIt) {
    const AsUser mail_owner({2009, 2009, {2009}});
    Visitor visitor("mail.example.com", 8);
    for (const char* login : {"games", "man"}) {
        VisitRequest request;
        {
            const AsRoot root;
            request = WithPlan(login);
            folder_.Write("maildrop-" + SString(login), "", 0600);
        }
        visitor.Send(request);
        EXPECT_EQ(visitor.Next().finger_info, SString("Plan:\r\n----\r\n") + login + "'s plan\r\n");
        EXPECT_EQ(FileOwner(request.maildrop), login);
        EXPECT_EQ(FileGroup(request.maildrop), "mail");
    }
    EXPECT_EQ(geteuid(), 2009U);
}

TEST_F(VisitorTest, DoesOtherWork) {
    Visitor visitor([](const VisitRequest& request, ManyUsers*, VisitProgress*) {
        VisitAnswer answer;
        answer.end = VisitEnd::Visited;
        answer.outcome = static_cast<int64_t>(request.task.Count() * 100 + request.user.groups.size());
        return answer;
    });
    visitor.Send({"", "", {1, 1, {1, 2}}, {"remove", "", "it"}});
    visitor.Send({});
    EXPECT_EQ(visitor.Next().outcome, 302);
    EXPECT_EQ(visitor.Next().outcome, 0);
}

TEST_F(VisitorTest, SendsMoreThanASocketHolds) {
    Visitor visitor("mail.example.com", 8);
    VisitRequest request = Request("games");
    folder_.Write("home-games/.plan", SString('x', 500'000) + "\n");
    request.user.groups.resize(10'000, request.user.gid);
    for (int i = 0; i < 20; ++i) visitor.Send(request);
    for (int i = 0; i < 20; ++i) EXPECT_EQ(visitor.Next().finger_info.Length(), 500'015U);
}

TEST_F(VisitorTest, ReplacesOneThatDoesNotAnswer) {
    Visitor visitor("mail.example.com", 8, milliseconds(200));
    kill(Children().at(0), SIGSTOP);
    visitor.Send(WithPlan("games"));
    visitor.Send(WithPlan("man"));
    EXPECT_FALSE(visitor.HasAnswer(std::chrono::steady_clock::now()));
    EXPECT_EQ(visitor.Next().end, VisitEnd::GivenUp);
    visitor.Send(WithPlan("man"));
    EXPECT_EQ(visitor.Next().end, VisitEnd::Visited);
    EXPECT_EQ(visitor.Reminders(), SStringList("Home directory did not answer: " + (folder_ / "home-games")));
}

TEST_F(VisitorTest, TriesAgainWhenTheVisitorWasKilled) {
    Visitor visitor("mail.example.com", 8);
    kill(Children().at(0), SIGKILL);
    visitor.Send(WithPlan("games"));
    visitor.Send(WithPlan("man"));
    EXPECT_EQ(visitor.Next().end, VisitEnd::Visited);
    EXPECT_EQ(visitor.Next().finger_info, "Plan:\r\n----\r\nman's plan\r\n");
    EXPECT_TRUE(visitor.Reminders().IsEmpty());
}

TEST_F(VisitorTest, IgnoresTheTerminalsSignals) {
    Visitor visitor("mail.example.com", 8);
    visitor.Send(Request("games"));
    visitor.Next();  // by then it has set them
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) kill(Children().at(0), number);
    visitor.Send(WithPlan("man"));
    EXPECT_EQ(visitor.Next().end, VisitEnd::Visited);
    EXPECT_TRUE(visitor.Reminders().IsEmpty());
}

TEST_F(VisitorTest, FinishesOnlyWhatItHasBegunWhenItIsStopped) {
    Visitor visitor("mail.example.com", 8);
    visitor.Send(Request("games"));
    EXPECT_EQ(visitor.Next().end, VisitEnd::Visited);
    const pid_t child = Children().at(0);
    kill(child, SIGSTOP);
    visitor.Send(WithPlan("man"));
    visitor.Stop();
    kill(child, SIGCONT);
    EXPECT_EQ(visitor.Next().end, VisitEnd::Stopped);
    EXPECT_FALSE(EntryExists(folder_ / "home-man/.forward.NOTICE"));
}

TEST_F(VisitorTest, EndsWithItsSocketAndHoldsNoOther) {
    const Descriptor other = Descriptor::Open("/dev/null", O_RDONLY);
    pid_t child = 0;
    {
        const Visitor visitor("mail.example.com", 8);
        child = Children().at(0);
        const SString folder = "/proc/" + SString(child) + "/fd";
        while (ReadDir(folder).Count() > 4) usleep(1000);
        EXPECT_EQ(ReadDir(folder).Count(), 4U);
        EXPECT_EQ(RealPath(folder + "/1"), "/dev/null");
    }
    EXPECT_NE(kill(child, 0), 0);
}

TEST_F(VisitorTest, EndsThoughAnotherProcessHoldsItsSocket) {
    pid_t other = 0;
    {
        const Visitor visitor("mail.example.com", 8);
        other = StartChild([] { pause(); });
    }
    kill(other, SIGKILL);
    EXPECT_EQ(waitpid(other, nullptr, 0), other);
}

}  // namespace
