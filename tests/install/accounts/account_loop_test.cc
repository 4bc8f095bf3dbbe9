// The loop of the account step on logins that every Debian host has.
#include "install/accounts/account_loop.h"

#include <algorithm>

#include "install/settings.h"
#include "tests/dialogue.h"
#include "tests/install/account_database.h"
#include "tests/install/accounts/home_of_login.h"

namespace {

class Loop : public testing::Test {
  protected:
    Loop() { MakeDir(Maildrops(), 0755); }
    ~Loop() override { gf_Killed = 0; }

    SString Maildrops() const { return folder_ / "maildrops/"; }
    /// Enough logins in front that the rest is worked on in batches.
    std::deque<Candidate> Many(const SStringList& others) {
        std::deque<Candidate> candidates(100, {"root", "root", "relative"});
        for (const SString& login : others) candidates.push_back({login, login, MakeHome(folder_, login)});
        return candidates;
    }
    SString RunLoop(const std::deque<Candidate>& candidates) {
        const AccountSite site{"example.com", Maildrops(), "example.com"};
        Visitor visitor("mail.example.com", 8);
        Dialogue dialogue;
        AccountLoop(site, &visitor, &results_).Run(candidates);
        return dialogue.Screen();
    }

    AccountDatabase database_;
    const TemporaryFolder& folder_ = database_.Folder();
    AccountResults results_;
};

TEST_F(Loop, TellsTheSameOfABatch) {
    database_.Add("Irc", "irc@example.com");
    folder_.Write("maildrops/man", "");
    ASSERT_EQ(link((folder_ / "maildrops/man").CString(), (folder_ / "maildrops/other").CString()), 0);
    std::deque<Candidate> candidates = Many({"games", "irc", "man"});
    candidates.push_back({"Nobody", "no-such-login", "/"});
    candidates.push_back({"a/b", "a/b", "/"});
    const SString screen = RunLoop(candidates);
    EXPECT_TRUE(
        screen.StartsWith("    root@example.com (root)....created\n"
                          "    root@example.com (root)....already exists\n"))
        << screen;
    EXPECT_TRUE(screen.EndsWith((SString("    root@example.com (root)....already exists\n") +
                                 "    games@example.com (games)....created\n"
                                 "    irc@example.com (irc)....already exists\n"
                                 "    man@example.com (man)....\nALERT: Possible security problem with " +
                                 Maildrops() + "man\ncreated\n")
                                    .Bytes()))
        << screen;
    EXPECT_EQ(results_.created, SStringList({"root (root)", "games (games)", "man (man)"}));
    EXPECT_EQ(results_.uids_and_passwords.Count(), 3U);
    EXPECT_TRUE(results_.failed.IsEmpty());
}

TEST_F(Loop, KeepsTheOthersOfABatchWhenOneIsRefused) {
    constexpr const char* kMan = "4";  // after somebody, root and games
    database_.Refuse(SString("name = 'Finger-Info' AND account = ") + kMan);
    const SString screen = RunLoop(Many({"games", "man", "irc"}));
    EXPECT_TRUE(
        screen.EndsWith("    games@example.com (games)....created\n"
                        "    man@example.com (man)....Error: couldn't create the account!\n"
                        "    irc@example.com (irc)....created\n"))
        << screen;
    EXPECT_EQ(results_.failed, "man (man)");
    EXPECT_EQ(database_.Values("games", "UNIX-UserName"), "games");
    EXPECT_EQ(database_.Values("irc", "UNIX-UserName"), "irc");
    // What the notes tell is what the database holds.
    EXPECT_EQ(results_.uids_and_passwords.Get(1), "games " + database_.Values("games", "Password").Get(0));
}

TEST_F(Loop, RecordsForwardFilesOfThoseWhoCanBeAddressed) {
    std::deque<Candidate> candidates = Many({"games"});
    folder_.Write("home-games/.forward", "");
    RunLoop(candidates);
    RunLoop(candidates);
    EXPECT_EQ(results_.forward_users, SStringList({"games@example.com", "games@example.com"}));
}

TEST_F(Loop, WritesABatchAgainOneByOneWithThePartsThatAreAccepted) {
    database_.Refuse("value = 'man'");
    RunLoop(Many({"games", "man", "irc"}));
    EXPECT_EQ(database_.Uids(), SStringList({"Somebody", "root", "games", "irc"}));
    database_.Execute("DROP INDEX refuse");
    database_.Refuse("name = 'UNIX-UserName' AND value = 'man'");
    RunLoop(Many({"man"}));
    EXPECT_EQ(database_.Values("man", "Local-Delivery"), "UNIX");
    EXPECT_TRUE(database_.Values("man", "SMTP-Address").IsEmpty());
}

TEST_F(Loop, OfABatchThatCannotBeginOnlyTellsWhatExists) {
    database_.Add("Irc", "irc@example.com");
    std::deque<Candidate> candidates = Many({"games", "irc"});
    std::fill_n(candidates.begin(), 100,
                Candidate{"Gone", "no-such-login", "/"});  // each would wait for the lock
    const auto other = sqlite::Connection::Open(database_.Path(), sqlite::Mode::Shared);
    ASSERT_NE(other, nullptr);
    const sqlite::Transaction writing(*other);
    const SString screen = RunLoop(candidates);
    EXPECT_EQ(screen,
              "    games@example.com (games)....Error: couldn't create the account!\n"
              "    irc@example.com (irc)....already exists\n");
}

TEST_F(Loop, StopsBeforeTheNextLoginAfterASignal) {
    gf_Killed = 1;
    EXPECT_EQ(RunLoop(Many({})), "\nInterrupted.\n\n");
    EXPECT_TRUE(database_.Uids().IsEmpty());
}

}  // namespace
