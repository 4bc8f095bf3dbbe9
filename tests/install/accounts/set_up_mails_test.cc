#include "install/accounts/set_up_mails.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "install/accounts/results_mail.h"
#include "install/visits/forward_notice.h"
#include "support/mail/queue.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "tests/install/accounts/sample_results.h"
#include "tests/install/record/recording.h"
#include "tests/temporary_folder.h"

namespace {

const SString kHost = "mail.example.com";

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
    Queue(SampleResults());
    EXPECT_EQ(Names("control"),
              SStringList({".AA.NewAccounts-Control", ".AB.Notify-Control", ".AC.Notify-Control"}));
    EXPECT_EQ(Names("messages"),
              SStringList({".AB.Notify-Body", ".AB.Notify-Header", ".AC.Notify-Body", ".AC.Notify-Header"}));
}

TEST_F(SetUpMails, QueuesThemInTheirOrder) {
    Queue(SampleResults());
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
    Queue(SampleResults());
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
    Queue(SampleResults());
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
    Queue(SampleResults());
    EXPECT_EQ(Text("messages", ".AB" + ProcessIdString() + ".Notify-Body"), ResultsMailBody(SampleResults()));
    EXPECT_EQ(Text("messages", ".AC" + ProcessIdString() + ".Notify-Body"),
              pz_ForwardMessage1 + kHost + pz_ForwardMessage2);
}

TEST_F(SetUpMails, WithdrawsAMailWhoseTextCannotBeWritten) {
    // Root may write everywhere: a file in the directory's place is what stops it.
    ASSERT_EQ(rmdir((folder_ / "messages").CString()), 0);
    folder_.Write("messages", "");
    Queue(SampleResults());
    EXPECT_EQ(Names("control"), SStringList(".AA.NewAccounts-Control"));
}

TEST_F(SetUpMails, LeavesNoTextWithoutAControlFile) {
    ASSERT_EQ(rmdir((folder_ / "control").CString()), 0);
    Queue(SampleResults());
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

TEST(SendNewAccountForm, QueuesOneRequestNamedAfterTheProcess) {
    const TemporaryFolder folder;
    PutEnv("TernHarbor", folder / "");
    ASSERT_TRUE(MakeDir(folder / "control", 0770));
    SendNewAccountForm();
    EXPECT_EQ(BaseName(ReadDir(folder / "control"), ""),
              SStringList("NewAccountForm." + ProcessIdString() + "-Control"));
    EXPECT_EQ(MapFileRead(ReadDir(folder / "control").Get(0)),
              "Function: Account-Manager\n"
              "Control-Type: Request\n"
              "Request-Type: NewAccountForm\n"
              "Priority: 1\n");
}

TEST(SendNewAccountForm, LeavesNothingWhereThereIsNoQueue) {
    const TemporaryFolder folder;
    PutEnv("TernHarbor", folder / "");
    SendNewAccountForm();
    EXPECT_TRUE(ReadDir(folder / "").IsEmpty());
}

TEST_F(SetUpMails, AreRecordedWithTheirBytes) {
    const Recording recording;
    Queue(SampleResults());
    const auto changes = recording.Changes();
    ASSERT_EQ(changes.size(), 3U);
    for (const Change& change : changes) {
        const auto& queued = std::get<change::MessageQueued>(change);
        SStringList files = MapFileRead(queued.control);
        for (const SString& path : queued.text) files.Push(MapFileRead(path));
        EXPECT_EQ(queued.digest, KeyedChecksum(RecordKey(), MessageBytes(files)));
        EXPECT_EQ(queued.text.Count(), queued.control.Matches("NewAccounts") ? 0U : 2U);
        for (const SString& path : queued.text) EXPECT_TRUE(FileExists(path)) << path;
    }
}

}  // namespace
