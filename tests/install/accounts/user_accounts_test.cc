// The account step on the logins that every Debian host has; their homes and maildrops are the test's.
#include "install/console.h"
#include "install/critical_section.h"
#include "install/settings.h"
#include "install/steps.h"
#include "tests/dialogue.h"
#include "tests/install/account_database.h"
#include "tests/install/accounts/home_of_login.h"

namespace {

class UserAccounts : public testing::Test {
  protected:
    UserAccounts() {
        gstr_HostName = "mail.example.com";
        gstr_DomainName = "example.com";
        gstr_TernHarbor = folder_ / "";
        gstr_MaildropDir = folder_ / "maildrops/";
        gstr_PasswdFile = folder_ / "passwd";
        gstrl_BadUsers = SStringList(gppz_BadUsers);
        gstrl_Reminders.Reset();
        MakeDir(gstr_MaildropDir, 0755);
    }
    ~UserAccounts() override { gf_Killed = 0; }

    SString MakeHome(const SString& login) const { return ::MakeHome(folder_, login); }
    SString Line(const SString& login, const SString& comment, const SString& home) {
        return login + ":x:1:1:" + comment + ":" + home + ":/bin/sh\n";
    }
    void WritePasswords(const SString& text) { folder_.Write("passwd", text); }

    /// Runs the step; the screen is kept.
    int Run(const SString& answers) {
        Dialogue dialogue(answers);
        const int result = AddUserAccounts();
        screen_ = dialogue.Screen();
        return result;
    }
    bool Shows(const SString& text) const { return screen_.Bytes().find(text.Bytes()) != std::string::npos; }
    size_t Queued() const { return ReadDir(folder_ / "control").Count(); }

    AccountDatabase database_;
    const TemporaryFolder& folder_ = database_.Folder();
    SString screen_;
};

TEST_F(UserAccounts, MakesAnAccountFromThePasswordFile) {
    const SString home = MakeHome("games");
    folder_.Write("home-games/.plan", "Win.\n");
    folder_.Write("home-games/.forward", "");
    WritePasswords(Line("bin", "bin", "/bin") + Line("games", "& Smith,Room 12", home) + Line("man", "", ""));
    EXPECT_EQ(Run("\n\n\n"), 1);
    EXPECT_EQ(database_.Uids(), SStringList("Games_Smith"));
    EXPECT_EQ(database_.Values("Games_Smith", "Name"), "Games Smith");
    EXPECT_EQ(database_.Values("Games_Smith", "UNIX-UserName"), "games");
    EXPECT_EQ(database_.Values("Games_Smith", "SMTP-Address"), "games@mail.example.com");
    EXPECT_EQ(database_.Values("Games_Smith", "Finger-Info"), "Plan:\r\n----\r\nWin.\r\n");
    EXPECT_TRUE(FileExists(home + "/.forward.NOTICE"));
    EXPECT_EQ(Queued(), 3U);
    EXPECT_TRUE(Shows("Searching through " + gstr_PasswdFile +
                      "....\n\nSkipping bin (system user)\nSkipping man (no home directory)\n\n"
                      "1 UNIX accounts found.\n\nPlease list"))
        << screen_;
    EXPECT_TRUE(Shows("Creating user accounts.... \n    games@mail.example.com (Games Smith)....created\n\n"))
        << screen_;
    EXPECT_EQ(gf_OkToBeKilled, 1);
}

TEST_F(UserAccounts, ChangesNothingAtASecondRun) {
    const SString home = MakeHome("games");
    WritePasswords(Line("games", "", home));
    ASSERT_EQ(Run("\n\n\n"), 1);
    const SStringList password = database_.Values("games", "Password");
    folder_.Write("home-games/.forward.NOTICE", "kept\n");
    ASSERT_EQ(Run("\n\n\n"), 1);
    EXPECT_TRUE(Shows("    games@mail.example.com (games)....already exists\n\n")) << screen_;
    EXPECT_EQ(database_.Uids(), SStringList("games"));
    EXPECT_EQ(database_.Values("games", "Password"), password);
    EXPECT_EQ(MapFileRead(home + "/.forward.NOTICE"), "kept\n");
    EXPECT_EQ(Queued(), 2U);  // the first run's
}

TEST_F(UserAccounts, CountsMoreThanEightAccountsAsExistingOnes) {
    WritePasswords(Line("games", "", MakeHome("games")));
    for (int i = 0; i < 8; ++i) database_.Add("User" + SString(i), SString(i) + "@else.example");
    EXPECT_EQ(Run("q\n"), 0);
    EXPECT_TRUE(Shows("Which method? All/Passwd/None/Quit [P] \n")) << screen_;
    EXPECT_TRUE(screen_.StartsWith("Electronic mail accounts can be created")) << screen_;
    database_.Add("User8", "8@else.example");
    EXPECT_EQ(Run("q\n"), 0);
    EXPECT_TRUE(Shows("Which method? All/Passwd/None/Quit [N] \n")) << screen_;
    EXPECT_TRUE(screen_.StartsWith("There are already some electronic mail accounts")) << screen_;
    EXPECT_EQ(Run("p\nexample.com,mail.example.com\n\n"), 1);
    EXPECT_TRUE(Shows("1 UNIX accounts found. (Existing accounts will not be modified.)\n\n")) << screen_;
}

TEST_F(UserAccounts, OffersTheFormWhereNoAccountsAreWanted) {
    EXPECT_EQ(Run("None\nyes\n"), 1);
    EXPECT_TRUE(Shows("  It can be\nused to begin adding users to the system.")) << screen_;
    EXPECT_TRUE(screen_.EndsWith("Send an E-mail account form? yes/no [no] \n")) << screen_;
    EXPECT_EQ(Queued(), 1U);
    for (int i = 0; i < 9; ++i) database_.Add("User" + SString(i), SString(i) + "@else.example");
    EXPECT_EQ(Run("\n"), 1);
    EXPECT_TRUE(screen_.EndsWith("All/Passwd/None/Quit [N] \n")) << screen_;
}

TEST_F(UserAccounts, OffersTheFormWhereThePasswordFileCannotBeOpened) {
    EXPECT_EQ(Run("p\n\n"), 1);
    EXPECT_TRUE(Shows("WARNING:  couldn't open " + gstr_PasswdFile)) << screen_;
    EXPECT_TRUE(Shows("  It can be\nused to add users to the system.")) << screen_;
    EXPECT_EQ(Queued(), 0U);
    EXPECT_EQ(Run("p\ny\n"), 1);
    EXPECT_EQ(Queued(), 1U);
}

TEST_F(UserAccounts, StopsWhereThereIsNobody) {
    WritePasswords(Line("bin", "", "/bin") + Line("nobody", "", "/"));
    EXPECT_EQ(Run("p\n"), 1);
    EXPECT_TRUE(screen_.EndsWith("Skipping nobody (system user)\n\nNo accounts to create.\n")) << screen_;
    EXPECT_EQ(Queued(), 1U);  // the mail that tells Postmaster of those left out
    WritePasswords("");
    EXPECT_EQ(Run("p\n"), 1);
    EXPECT_EQ(Queued(), 1U);
}

TEST_F(UserAccounts, CanBeQuitAtTheHostName) {
    WritePasswords(Line("games", "", MakeHome("games")));
    EXPECT_EQ(Run("p\nexample.com\nquit\n"), 0);
    EXPECT_TRUE(database_.Uids().IsEmpty());
}

TEST_F(UserAccounts, PassesOverWhoeverTheHostDoesNotKnow) {
    WritePasswords(Line("no-such-login", "", "/home/no") + Line("-name", "", "/home/no"));
    EXPECT_EQ(Run("p\n\n\n"), 1);
    EXPECT_TRUE(Shows("2 UNIX accounts found.\n")) << screen_;
    EXPECT_TRUE(screen_.EndsWith("Creating user accounts.... \n\n")) << screen_;
    EXPECT_TRUE(database_.Uids().IsEmpty());
}

TEST_F(UserAccounts, GivesAMaildropToTheUserWhomTheHostKnows) {
    const SString maildrop = folder_.Write("maildrops/games", "");
    WritePasswords(Line("games", "", MakeHome("games")));  // with other ids
    EXPECT_EQ(Run("p\n\n\n"), 1);
    struct stat status = {};
    ASSERT_EQ(stat(maildrop.CString(), &status), 0);
    EXPECT_EQ(status.st_uid, EntryOf("games")->uid);
}

TEST_F(UserAccounts, ShowsNoControlCharacters) {
    WritePasswords(Line("games", "Ann\x1b[2J Lee", MakeHome("games")) + Line("a\x1b[2Jb", "", ""));
    EXPECT_EQ(Run("p\n\n\n"), 1);
    EXPECT_TRUE(Shows("Skipping a?[2Jb (no home directory)\n")) << screen_;
    EXPECT_TRUE(Shows("(Ann?[2J Lee)....created\n")) << screen_;
    EXPECT_EQ(database_.Values("Ann_2J_Lee", "Name"), "Ann\x1b[2J Lee");
}

TEST_F(UserAccounts, WarnsOfAMaildropThatIsALink) {
    ASSERT_EQ(symlink("elsewhere", (folder_ / "maildrops/games").CString()), 0);
    WritePasswords(Line("games", "", MakeHome("games")));
    EXPECT_EQ(Run("p\n\n\n"), 1);
    EXPECT_TRUE(Shows("    games@mail.example.com (games)....\nALERT: Possible security problem with " +
                      gstr_MaildropDir + "games\ncreated\n"))
        << screen_;
}

TEST_F(UserAccounts, StopsAtTheFirstLoginAfterASignal) {
    WritePasswords(Line("games", "", MakeHome("games")) + Line("man", "", MakeHome("man")));
    gf_Killed = 1;
    EXPECT_EQ(Run("p\n\n\n"), 0);
    EXPECT_TRUE(screen_.EndsWith("Creating user accounts.... \n\nInterrupted.\n\n\n\nExiting.\n\n"))
        << screen_;
    EXPECT_TRUE(database_.Uids().IsEmpty());
    EXPECT_EQ(Queued(), 0U);
    EXPECT_EQ(gf_OkToBeKilled, 1);
}

TEST_F(UserAccounts, TellsOfFailuresAndGoesOn) {
    WritePasswords(Line("games", "", MakeHome("games")) + Line("man", "", MakeHome("man")));
    database_.Refuse("value = 'games'");
    EXPECT_EQ(Run("p\n\n\n"), 1);
    EXPECT_TRUE(
        Shows("(games)....Error: couldn't create the account!\n    man@mail.example.com (man)....created\n"))
        << screen_;
}

}  // namespace
