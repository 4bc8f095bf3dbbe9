#include "install/accounts/set_up_mails.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "install/accounts/forward_notice.h"
#include "install/accounts/results_mail.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "tests/temporary_folder.h"

namespace {

const SString kHost = "mail.example.com";

AccountResults Results() {
    AccountResults results;
    results.uids_and_passwords = {"Ann_Lee bodil4", "Jones_Smith catin2"};
    results.created = {"Ann Lee (ann)", "Jones Smith (jones)"};
    results.failed = {"A B (a b)"};
    results.skipped_names = {"bin", "Nobody", "Long"};
    results.skipped_logins = {"bin", "nobody", "twelve-chars"};
    results.forward_users = {"ann@example.com", "jones@example.com"};
    return results;
}

class SetUpMails : public testing::Test {
  protected:
    SetUpMails() {
        PutEnv("TernHarbor", folder_ / "");
        MakeDir(folder_ / "control", 0770);
        MakeDir(folder_ / "messages", 0770);
    }

    void Queue(const AccountResults& results) { QueueSetUpMails(results, kHost); }

    /// The names without the stamps in them, sorted.
    SStringList Names(const SString& directory) const {
        SStringList names = BaseName(ReadDir(folder_ / directory), "");
        for (SString& name : names) {
            const SString process = ProcessIdString();
            EXPECT_TRUE(name.Matches("^\\d{20}\\.A[ABC]" + process + "\\.")) << name;
            name = name.S("^\\d+", "").S(process, "");
        }
        names.Sort();
        return names;
    }
    SString Text(const SString& directory, const SString& name_end) const {
        for (const SString& path : ReadDir(folder_ / directory)) {
            if (path.EndsWith(name_end.Bytes())) return MapFileRead(path);
        }
        return "no such file";
    }

    TemporaryFolder folder_;
};

TEST_F(SetUpMails, QueuesTheThreeMessages) {
    Queue(Results());
    EXPECT_EQ(Names("control"),
              SStringList({".AA.NewAccounts-Control", ".AB.Notify-Control", ".AC.Notify-Control"}));
    EXPECT_EQ(Names("messages"),
              SStringList({".AB.Notify-Body", ".AB.Notify-Header", ".AC.Notify-Body", ".AC.Notify-Header"}));
}

TEST_F(SetUpMails, QueuesThemInTheirOrder) {
    Queue(Results());
    SStringList names = BaseName(ReadDir(folder_ / "control"), "");
    names.Sort();  // by the time
    EXPECT_TRUE(names.Get(0).EndsWith(".NewAccounts-Control"));
    EXPECT_TRUE(names.Get(1).Matches("\\.AB"));
    EXPECT_TRUE(names.Get(2).Matches("\\.AC"));
}

TEST_F(SetUpMails, QueuesOnlyWhatHasSomethingToSay) {
    const struct {
        const char* what;
        SStringList created;
        SStringList skipped;
        SStringList failed;
        SStringList forwards;
        SStringList controls;
    } cases[] = {
        {"nothing", {}, {}, {}, {}, {}},
        {"only failures", {}, {}, {"a"}, {}, {}},
        {"a created user", {"a"}, {}, {}, {}, {".AA.NewAccounts-Control", ".AB.Notify-Control"}},
        {"a skipped user", {}, {"a"}, {}, {}, {".AB.Notify-Control"}},
        {"a forward user", {}, {}, {}, {"a"}, {".AB.Notify-Control", ".AC.Notify-Control"}},
    };
    for (const auto& c : cases) {
        AccountResults results;
        results.created = c.created;
        results.uids_and_passwords = c.created;
        results.skipped_logins = c.skipped;
        results.skipped_names = c.skipped;
        results.failed = c.failed;
        results.forward_users = c.forwards;
        Queue(results);
        EXPECT_EQ(Names("control"), c.controls) << c.what;
        for (const SString& path : ReadDir(folder_ / "control")) RemoveFile(path);
    }
}

TEST_F(SetUpMails, WritesTheControlFields) {
    Queue(Results());
    EXPECT_EQ(Text("control", ".NewAccounts-Control"),
              "Function: Account-Manager\nControl-Type: Request\nPriority: 1\nRequest-Type: Greet\n"
              "Account-To: Ann_Lee bodil4\n\tJones_Smith catin2\n");
    EXPECT_EQ(Text("control", ".AB" + ProcessIdString() + ".Notify-Control"),
              "Function: Account-Handler\nControl-Type: Mail\nPriority: 1\nAccount-To: Postmaster\n"
              "Host-From: mail.example.com\nUser-From: SMTP<>\n");
    EXPECT_EQ(Text("control", ".AC" + ProcessIdString() + ".Notify-Control"),
              "Function: Account-Handler\nControl-Type: Mail\nPriority: 1\n"
              "Channel-To: SMTP <ann@example.com>\n\tSMTP <jones@example.com>\n"
              "Host-From: mail.example.com\nUser-From: SMTP<Postmaster@mail.example.com>\n");
}

SString MaskStamps(const SString& header) {
    return header
        .S("^Date: [A-Z][a-z]{2}, \\d{1,2} [A-Z][a-z]{2} \\d{4} [0-9:]{8} [+-]\\d{4}\r", "Date: DATE\r")
        .S("<\\d{20}\\.", "<STAMP.");
}

TEST_F(SetUpMails, WritesTheHeaders) {
    Queue(Results());
    EXPECT_EQ(MaskStamps(Text("messages", ".AB" + ProcessIdString() + ".Notify-Header")),
              "Date: DATE\r\n"
              "From: \"tern.harbor Installation Program\" <>\r\n"
              "To: Mail Administrator <Postmaster@mail.example.com>\r\n"
              "Subject: tern.harbor Installation Results\r\n"
              "Message-ID: <STAMP.AB@mail.example.com>\r\n");
    EXPECT_EQ(MaskStamps(Text("messages", ".AC" + ProcessIdString() + ".Notify-Header")),
              "Date: DATE\r\n"
              "From: Mail Administrator <Postmaster@mail.example.com>\r\n"
              "To: Users with forward files: ;\r\n"
              "Subject: NOTICE: \".forward\" File Deactivated\r\n"
              "Message-ID: <STAMP.AC@mail.example.com>\r\n");
}

TEST_F(SetUpMails, WritesTheBodies) {
    Queue(Results());
    EXPECT_EQ(Text("messages", ".AB" + ProcessIdString() + ".Notify-Body"), ResultsMailBody(Results()));
    EXPECT_EQ(Text("messages", ".AC" + ProcessIdString() + ".Notify-Body"),
              pz_ForwardMessage1 + kHost + pz_ForwardMessage2);
}

TEST_F(SetUpMails, WithdrawsAMailWhoseTextCannotBeWritten) {
    // Root may write everywhere: a file in the directory's place is what stops it.
    ASSERT_EQ(rmdir((folder_ / "messages").CString()), 0);
    folder_.Write("messages", "");
    Queue(Results());
    EXPECT_EQ(Names("control"), SStringList(".AA.NewAccounts-Control"));
}

TEST_F(SetUpMails, LeavesNoTextWithoutAControlFile) {
    ASSERT_EQ(rmdir((folder_ / "control").CString()), 0);
    Queue(Results());
    EXPECT_TRUE(ReadDir(folder_ / "messages").IsEmpty());
    EXPECT_FALSE(EntryExists(folder_ / "control"));
}

TEST_F(SetUpMails, QueuesManyAccountsInOneRequest) {
    AccountResults results;
    for (int i = 0; i < 20000; ++i) {
        results.uids_and_passwords.Push("User" + SString(i) + " bodil4");
        results.created.Push("User (user" + SString(i) + ")");
    }
    Queue(results);
    EXPECT_TRUE(Text("control", ".NewAccounts-Control").EndsWith("\n\tUser19999 bodil4\n"));
}

const char kBeginning[] =
    "Here's a summary of the tasks performed by the tern.harbor\r\n"
    "Install program:\r\n"
    "\r\n"
    "Accounts were set up for the following users:\r\n"
    "\r\n";
const char kAliases[] =
    "\r\n"
    "\r\n"
    "No system-wide aliases or user forwards were set up by the\r\n"
    "installation process (users with .forward files, if any,\r\n"
    "are listed below). Please look through your aliases file\r\n"
    "and set up accounts or aliases as necessary. See manual\r\n"
    "chapters 5 and 6 which describe the three alias types\r\n"
    "and how to set them up.\r\n"
    "\r\n";
const char kCreated[] =
    "        Ann Lee (ann)\r\n"
    "        Jones Smith (jones)\r\n";
const char kFailed[] =
    "\r\n"
    "Install failed to set up accounts for the following users:\r\n"
    "(contact Ardenvale for assistance)\r\n"
    "\r\n"
    "        A B (a b)\r\n"
    "\r\n";
const char kSkippedBeginning[] =
    "\r\n"
    "Accounts *were not* set up for the following UNIX id's\r\n"
    "since they historically do not refer to actual users or\r\n"
    "because a home directory isn't specified in the password\r\n"
    "database:\r\n"
    "\r\n";
const char kSkippedEnd[] =
    "\r\n"
    "You can add these accounts, or create aliases for them if\r\n"
    "you want. See the manual for instructions.\r\n"
    "\r\n";
const char kForwards[] =
    "\r\n"
    "The following users had .forward files in their home dir-\r\n"
    "ectories:\r\n"
    "\r\n"
    "        ann@example.com\r\n"
    "        jones@example.com\r\n"
    "\r\n"
    "These files are not going to be honored by tern.harbor.\r\n"
    "See the manual for instructions on setting up forwarding\r\n"
    "for an account.\r\n"
    "\r\n";
const char kThanks[] =
    "\r\n"
    "Thank you for installing tern.harbor!\r\n"
    "\r\n";

TEST(ResultsMailBody, TellsAllThatHappened) {
    EXPECT_EQ(ResultsMailBody(Results()).Bytes(), std::string(kBeginning) + kCreated + kAliases + kFailed +
                                                      kSkippedBeginning +
                                                      "        bin          (bin)\r\n"
                                                      "        nobody       (Nobody)\r\n"
                                                      "        twelve-chars (Long)\r\n" +
                                                      kSkippedEnd + kForwards + kThanks);
}

TEST(ResultsMailBody, LeavesFailuresOutWhereAccountsExisted) {
    AccountResults results = Results();
    results.accounts_existed = true;
    results.skipped_logins.Reset();
    results.forward_users.Reset();
    EXPECT_EQ(ResultsMailBody(results).Bytes(), std::string(kBeginning) + kCreated + kAliases + kThanks);
}

TEST(ResultsMailBody, HasAnEmptyListWhereNoAccountWasMade) {
    EXPECT_EQ(ResultsMailBody({}).Bytes(), std::string(kBeginning) + kAliases + kThanks);
}

TEST(ResultsMailBody, FillsSkippedLoginsToTwelveCharacters) {
    const struct {
        SString login;
        SString name;
        SString line;
    } cases[] = {
        {"elevenchars", "X", "elevenchars  (X)"},
        {"twelve-chars", "X", "twelve-chars (X)"},
        {"thirteen-char", "X", "thirteen-char (X)"},
        {"bin", "", "bin"},
        {"-a", "X\r\n.\r\nQUIT", "-a           (X??.??QUIT)"},
        {"b\r\n", ".\n", "b??          (.?)"},
    };
    for (const auto& c : cases) {
        AccountResults results;
        results.skipped_logins = c.login;
        results.skipped_names = c.name;
        EXPECT_EQ(ResultsMailBody(results).Bytes(), std::string(kBeginning) + kAliases + kSkippedBeginning +
                                                        "        " + c.line.Bytes() + "\r\n" + kSkippedEnd +
                                                        kThanks);
    }
}

TEST(ForwardMessages, ReadAsALetter) {
    EXPECT_EQ((pz_ForwardMessage1 + kHost + pz_ForwardMessage2).Bytes(),
              "\t**************************************************\r\n"
              "\t***  YOUR \".forward\" FILE IS NO LONGER ACTIVE  ***\r\n"
              "\t**************************************************\r\n"
              "\r\n"
              "The tern.harbor mail system has been installed on mail.example.com.\r\n"
              "\r\n"
              "Mail forwarding in the new system is implemented in a different manner\r\n"
              "than with \".forward\" files.  The new system supports any combination\r\n"
              "of the following:\r\n"
              "\r\n"
              "\t- delivering messages to your UNIX mailbox\r\n"
              "\r\n"
              "\t- forwarding your mail to one or more other\r\n"
              "\t  E-mail addresses\r\n"
              "\r\n"
              "\t- sending \"vacation\" notices\r\n"
              "\r\n"
              "\t- filtering mail using procmail, filter, etc.\r\n"
              "\r\n"
              "Right now your account is set up to retain all your mail in your UNIX\r\n"
              "mailbox.  If you want to activate vacation notifications, or forward\r\n"
              "copies of your mail elsewhere, follow the instructions in the message\r\n"
              "you received with the subject, \"Greeting (your name)\".\r\n"
              "\r\n"
              "We hope you enjoy the mail system interface (via the World Wide Web and\r\n"
              "fill-in-the-blank E-mail forms) and the available mail account delivery\r\n"
              "options once you have had a chance to try them out.\r\n"
              "\r\n");
}

TEST(ForwardNoticeFile, IsAShortDatedNote) {
    EXPECT_EQ(ForwardNoticeFile(kHost).S("\nDate: [^\n]+\n", "\nDate: DATE\n").Bytes(),
              "##### Important Notice #####\n"
              "\n"
              "Date: DATE\n"
              "\n"
              "A new mail system, named tern.harbor, has been installed on\n"
              "mail.example.com.  One effect of this transition is that\n"
              ".forward files are no longer used for mail forwarding --\n"
              "please contact your postmaster or system administrator for\n"
              "more information.\n"
              "\n");
}

}  // namespace
