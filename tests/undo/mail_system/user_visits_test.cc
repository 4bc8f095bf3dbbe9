// Homes and maildrops of many, at logins that every Debian host has.
#include "undo/mail_system/user_visits.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "install/settings.h"
#include "install/visits/forward_notice.h"
#include "install/visits/maildrop.h"
#include "support/system/clock.h"
#include "tests/install/accounts/home_of_login.h"
#include "undo/later_runs.h"
#include "undo/ways.h"

namespace {

const SString kHost = "mail.example.com";
constexpr gid_t kMail = 8;
constexpr int kMany = 3000;

class UserVisits : public testing::Test {
  protected:
    UserVisits() { chmod((folder_ / "").CString(), 0755); }
    ~UserVisits() override { gf_Killed = 0; }

    change::Home HomeWithNotice(const SString& login, const SString& text) {
        const SString home = MakeHome(folder_, login);
        const auto entry = EntryOf(login);
        const SString notice = folder_.Write("home-" + login + "/.forward.NOTICE", text);
        EXPECT_EQ(chown(notice.CString(), entry->uid, entry->gid), 0);
        return {login, home, entry->uid, entry->gid};
    }
    bool HasNotice(const SString& login) const {
        return EntryExists(folder_ / ("home-" + login + "/.forward.NOTICE"));
    }
    change::MaildropGiven Maildrop(const SString& name, const change::Access& before) {
        const SString path = folder_.Write(name, "From x\n", before.mode.bits);
        EXPECT_EQ(chown(path.CString(), before.owner, before.group), 0);
        RepairMaildrop(path, {2001, 2001, {}}, kMail);
        return {path, before, 2001, kMail, false, 4711};
    }
    MaildropsGiven ManyMaildrops() {
        MaildropsGiven many;
        for (int i = 0; i < kMany; ++i) many.push_back(Maildrop("m" + SString(i), {0, 0, {0600}, ""}));
        return many;
    }
    /// Of the many.
    int CountOfRoots() const {
        int count = 0;
        for (int i = 0; i < kMany; ++i) count += StatusOf("m" + SString(i)).st_uid == 0 ? 1 : 0;
        return count;
    }
    struct stat StatusOf(const SString& name) const {
        struct stat status {};
        EXPECT_EQ(stat((folder_ / name).CString(), &status), 0);
        return status;
    }

    TemporaryFolder folder_;
    const UndoneRun run_ = {"", "", UniversalTime(), "", {}};
};

TEST_F(UserVisits, RemoveNotices) {
    const SString notice = ForwardNotice(kHost).Text();
    change::NoticesLeft change = {
        kHost, {HomeWithNotice("games", notice), HomeWithNotice("man", notice + "mine\n")}};
    change.homes.push_back({"no-such-login", folder_ / "none", 4242, 4242});
    change.homes.push_back(HomeWithNotice("news", notice));
    change.homes.back().uid += 1;  // another login's by now
    EXPECT_EQ(LookAt(change, run_).text, "Remove the notices in 4 homes");
    const TakenBack taken = TakeBack(change, run_);
    EXPECT_TRUE(taken.is_whole);
    EXPECT_EQ(taken.left,
              SStringList(
                  {"No longer as Install left it, so kept: " + folder_ / "home-man/.forward.NOTICE",
                   "Not looked for a notice, as the login is gone or has another id: no-such-login, news"}));
    EXPECT_FALSE(HasNotice("games"));
    EXPECT_TRUE(HasNotice("man") && HasNotice("news"));
}

TEST_F(UserVisits, GiveMaildropsBack) {
    MaildropsGiven change = {Maildrop("anna", {0, 0, {0600}, ""}), Maildrop("bruno", {33, 33, {0644}, ""}),
                             Maildrop("clara", {2001, 8, {0640}, ""}),
                             Maildrop("dora", {2001, 33, {04755}, ""})};
    chmod((folder_ / "clara").CString(), 0644);
    EXPECT_EQ(LookAt(change, run_).text, "Put owner and mode of 3 maildrops back as they were");
    const TakenBack taken = TakeBack(change, run_);
    EXPECT_TRUE(taken.is_whole);
    EXPECT_EQ(taken.left,
              SStringList({"Not given back, as it belonged to neither root nor its user: " +
                               folder_ / "bruno (before: owner 33, group 33, mode 644)",
                           "Given back without set-user-ID and set-group-ID, as its user may have written in"
                           " it: " +
                               folder_ / "dora (before: owner 2001, group 33, mode 4755)",
                           "No longer as Install left it, so left alone: " +
                               folder_ / "clara (before: owner 2001, group 8, mode 640)"}));
    EXPECT_EQ(StatusOf("anna").st_uid, 0U);
    EXPECT_EQ(StatusOf("anna").st_mode, mode_t{S_IFREG | 0600});
    EXPECT_EQ(StatusOf("bruno").st_uid, 2001U);
    EXPECT_EQ(StatusOf("clara").st_mode, mode_t{S_IFREG | 0644});
    EXPECT_EQ(LookAt(MaildropsGiven{change[1]}, run_).standing, Standing::Kept);
}

TEST_F(UserVisits, LeaveMaildropsThatALaterRunGaveAgain) {
    MaildropsGiven change = {Maildrop("anna", {0, 0, {0600}, ""}), Maildrop("bruno", {0, 0, {0600}, ""})};
    const TemporaryFolder runs;
    const SString text = LineOf({"2026-11-23T08:00:00Z", change[1]});
    runs.Write("20261123T080000Z-12", FormatLine() + text, 0600);
    const Records records(runs / ".");
    const LaterRuns later(records, "20261122T080000Z-11");
    UndoneRun run = run_;
    run.later = &later;
    const SString left = "Given again by a later run: take that one back first: " +
                         folder_ / "bruno (before: owner 0, group 0, mode 600)";
    EXPECT_EQ(LookAt(change, run).text, "Put owner and mode of 1 maildrop back as they were");
    EXPECT_EQ(LookAt(change, run).by_hand, left);
    const TakenBack taken = TakeBack(change, run);
    EXPECT_EQ(taken.left, left);
    EXPECT_FALSE(taken.is_known);
    EXPECT_EQ(StatusOf("anna").st_uid, 0U);
    EXPECT_EQ(StatusOf("bruno").st_uid, 2001U);
    EXPECT_EQ(LookAt(MaildropsGiven{change[1]}, run).standing, Standing::Later);
}

TEST_F(UserVisits, AreManyAtOnce) {
    const MaildropsGiven change = ManyMaildrops();
    EXPECT_TRUE(TakeBack(change, run_).left.IsEmpty());
    EXPECT_EQ(CountOfRoots(), kMany);
}

/// By several visitors: of two changes of one maildrop, the later one is taken back first.
TEST_F(UserVisits, KeepTheOrderAtOnePlace) {
    MaildropsGiven change = ManyMaildrops();
    for (int i = 0; i < kMany; ++i) {
        change.push_back(change[static_cast<size_t>(i)]);
        change.back().before = {2001, kMail, {0600}, ""};
    }
    EXPECT_TRUE(TakeBack(change, run_).left.IsEmpty());
    EXPECT_EQ(CountOfRoots(), kMany);
}

TEST_F(UserVisits, GoOnAfterASignal) {
    const MaildropsGiven change = ManyMaildrops();
    gf_Killed = 1;
    const TakenBack taken = TakeBack(change, run_);
    EXPECT_TRUE(taken.is_interrupted);
    EXPECT_FALSE(taken.is_whole);
    EXPECT_TRUE(taken.left.IsEmpty());
    EXPECT_LT(CountOfRoots(), kMany);
    gf_Killed = 0;
    EXPECT_TRUE(TakeBack(change, run_).is_whole);
    EXPECT_EQ(CountOfRoots(), kMany);
}

}  // namespace
