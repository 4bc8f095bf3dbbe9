#include "support/database/account.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "support/database/account_keys.h"
#include "support/database/sqlite.h"
#include "support/process/command.h"
#include "support/system/environment.h"
#include "tests/data_directory.h"
#include "tests/refusal.h"

namespace {

const char* const kFields[] = {"Name", "Password", "SMTP-Address"};

class Accounts : public testing::Test {
  protected:
    bool Make(const SString& uid, const SStringList& addresses = {}) {
        SAccountMod account;
        return accounts_.ModifyAccount(uid, &account) != 0 && account.IsNew() &&
               account.Set("Name", uid) != 0 && account.Set("SMTP-Address", addresses) != 0;
    }
    SStringList Field(const SString& uid, const SString& field) {
        SAccount account;
        return accounts_.GetAccountInfo(uid, &account) != 0 ? account.Get(field)
                                                            : SStringList("(no account)");
    }
    bool Exists(const SString& uid) { return accounts_.GetAccountInfo(uid, nullptr) != 0; }
    SString Owner(const SString& address) { return accounts_.GetAccountUID(S821Address(address)); }
    std::unique_ptr<sqlite::Connection> OtherProcess() {
        return sqlite::Connection::Open(data_.Config("MTA-Accounts"), sqlite::Mode::Shared);
    }
    /// What every operation answers on a database that is of no use.
    void ExpectNothingWorks(Lookup look_up) {
        SAccount record;
        SAccountMod account;
        SString uid;
        EXPECT_FALSE(accounts_.GetAccountInfo("Ann", nullptr));
        EXPECT_FALSE(accounts_.GetAccountInfo("Ann", &record));
        EXPECT_EQ(accounts_.Find("Ann"), look_up);
        EXPECT_EQ(accounts_.Find("Ann", &record), look_up);
        EXPECT_EQ(accounts_.FindOwner(S821Address("ann@example.com"), &uid), look_up);
        EXPECT_EQ(Owner("ann@example.com"), "");
        EXPECT_TRUE(accounts_.AccountUIDList().IsEmpty());
        EXPECT_EQ(accounts_.AccountCount(), 0);
        EXPECT_TRUE(accounts_.GetLocalMailDomains().IsEmpty());
        EXPECT_EQ(GenerateAccountUID("Ann"), "Ann");
        EXPECT_FALSE(accounts_.ModifyAccount("Ann", &account));
        EXPECT_FALSE(account.IsNew());
        EXPECT_FALSE(account.Set("Name", "Ann"));
        EXPECT_FALSE(account.Lock());
        EXPECT_FALSE(accounts_.DeleteAccount("Ann"));
        AccountTransaction transaction;
        EXPECT_FALSE(transaction.IsOpen());
        EXPECT_FALSE(accounts_.ModifyAccount("Ann", &account));
        EXPECT_FALSE(transaction.Commit());
    }

    DataDirectory data_;
    SAccountDBMod accounts_;
};

TEST_F(Accounts, KeepTheirFields) {
    const struct {
        const char* field;
        SStringList values;
    } cases[] = {
        {"Name", "Ann Example"},
        {"SMTP-Address", {"ann@example.com", "ann@mail.example.com"}},
        {"Finger-Info", "Plan:\r\n----\r\n"},
        {"Manager-Delivery", ""},
        {"Account-Delivery", SStringList()},
        {"name", "case matters"},
        {"Bytes", {SString(std::string("a\0b", 3)), "\xff\xfe", "", "last"}},
    };
    SAccountMod account;
    ASSERT_TRUE(accounts_.ModifyAccount("Ann", &account));
    EXPECT_TRUE(account.IsNew());
    EXPECT_EQ(account.Uid(), "Ann");
    for (const auto& c : cases) EXPECT_TRUE(account.Set(c.field, c.values)) << c.field;
    SAccount record;
    ASSERT_TRUE(accounts_.GetAccountInfo("Ann", &record));
    EXPECT_EQ(record.Uid(), "Ann");
    EXPECT_FALSE(record.IsLocked());
    for (const auto& c : cases) EXPECT_EQ(record.Get(c.field), c.values) << c.field;
    EXPECT_EQ(record.Get("Unknown"), SStringList());
    EXPECT_EQ(record.Fields().Count(), 6U);  // an empty field is none
}

TEST_F(Accounts, ModificationServesSeveralInTurn) {
    SAccountMod account;
    ASSERT_TRUE(accounts_.ModifyAccount("Ann", &account) && account.Set("Name", "Ann") && account.Lock());
    ASSERT_TRUE(accounts_.ModifyAccount("Bob", &account) && account.Set("Name", "Bob"));
    EXPECT_TRUE(account.IsNew());
    ASSERT_TRUE(accounts_.ModifyAccount("Ann", &account) && account.Set("Name", {"Ann", "Annie"}));
    EXPECT_FALSE(account.IsNew());
    EXPECT_EQ(Field("Ann", "Name"), SStringList({"Ann", "Annie"}));
    EXPECT_EQ(Field("Bob", "Name"), SStringList("Bob"));
    SAccount record;
    EXPECT_TRUE(accounts_.GetAccountInfo("Ann", &record) && record.IsLocked());
    EXPECT_TRUE(accounts_.GetAccountInfo("Bob", &record) && !record.IsLocked());
    EXPECT_FALSE(accounts_.ModifyAccount("", &account));
    EXPECT_FALSE(account.Set("Name", "nobody"));
    EXPECT_FALSE(SAccountMod().Lock());
    EXPECT_FALSE(SAccountMod().IsNew());
}

TEST_F(Accounts, ModificationTellsWhatWasStoredThroughIt) {
    SAccountMod account;
    ASSERT_TRUE(accounts_.ModifyAccount("Ann", &account) && account.Set("Name", {"Ann", "Annie"}));
    ASSERT_TRUE(account.Set("Password", "first") && account.Set("Password", "second") && account.Lock());
    EXPECT_EQ(account.Get("Name"), SStringList({"Ann", "Annie"}));
    EXPECT_EQ(account.Get("Password"), SStringList("second"));
    EXPECT_EQ(account.Fields(), SStringList({"Name", "Password"}));
    EXPECT_TRUE(account.IsLocked());

    ASSERT_TRUE(accounts_.ModifyAccount("Bob", &account));
    EXPECT_EQ(account.Get("Name"), SStringList());
    EXPECT_FALSE(account.IsLocked());
    ASSERT_TRUE(accounts_.DeleteAccount("Bob"));
    EXPECT_FALSE(account.Set("Name", "Bob"));  // refused
    EXPECT_EQ(account.Get("Name"), SStringList());
}

TEST_F(Accounts, AreListedInTheOrderOfCreation) {
    SStringList uids;
    for (const char* uid : {"Zoe", "Ann", "ann", "Mia", "\xc3\x84nn"}) {
        ASSERT_TRUE(Make(uid));
        uids.Push(uid);
        EXPECT_EQ(accounts_.AccountUIDList(), uids);
        EXPECT_EQ(accounts_.AccountCount(), static_cast<long>(uids.Count()));
    }
}

TEST_F(Accounts, OwnTheirAddresses) {
    ASSERT_TRUE(
        Make("Ann", {"Ann@Example.com", "ann@mail.example.com", "no address", "", "localname", "\"a@b\""}));
    ASSERT_TRUE(Make("Bob", {"bob@example.com", "ANN@example.com", "bob@example.com"}));
    EXPECT_EQ(Owner("ann@EXAMPLE.com"), "Ann");
    EXPECT_EQ(Owner("<@relay.example:ann@mail.example.com>"), "Ann");
    EXPECT_EQ(Owner("bob@example.com"), "Bob");
    for (const char* nobody : {"", "<>", "no address", "ann", "ann@example.net"})
        EXPECT_EQ(Owner(nobody), "");
    EXPECT_EQ(accounts_.GetLocalMailDomains(), SStringList({"example.com", "mail.example.com"}));

    SAccountMod account;
    ASSERT_TRUE(accounts_.ModifyAccount("Ann", &account) && account.Set("SMTP-Address", "other@example.net"));
    EXPECT_EQ(Owner("ann@example.com"), "Bob");
    EXPECT_EQ(Owner("ann@mail.example.com"), "");
    EXPECT_EQ(Owner("other@example.net"), "Ann");
    ASSERT_TRUE(account.Set("SMTP-Address", "ann@example.com"));
    EXPECT_EQ(Owner("ann@example.com"), "Ann");  // the older account
    EXPECT_EQ(accounts_.GetLocalMailDomains(), SStringList("example.com"));
}

TEST_F(Accounts, AreDeletedWithAllThatBelongsToThem) {
    ASSERT_TRUE(Make("Ann", "ann@example.com") && Make("Bob", "bob@example.com"));
    SAccountMod bob;
    ASSERT_TRUE(accounts_.ModifyAccount("Bob", &bob));
    EXPECT_TRUE(accounts_.DeleteAccount("Bob"));
    EXPECT_FALSE(accounts_.DeleteAccount("Bob"));
    EXPECT_FALSE(Exists("Bob"));
    EXPECT_EQ(Owner("bob@example.com"), "");
    EXPECT_EQ(accounts_.AccountUIDList(), SStringList("Ann"));
    ASSERT_TRUE(Make("Carol", "carol@example.com"));  // may get what identified the deleted one inside
    EXPECT_FALSE(bob.Set("Name", "Bob"));
    EXPECT_FALSE(bob.Lock());
    EXPECT_EQ(Field("Carol", "Name"), SStringList("Carol"));
    EXPECT_EQ(*OtherProcess()->Value("SELECT count(*) FROM fields"), "4");
}

TEST_F(Accounts, TransactionIsAllOrNothing) {
    {
        const AccountTransaction transaction;
        EXPECT_TRUE(transaction.IsOpen());
        EXPECT_TRUE(Make("Ann", "ann@example.com"));
        EXPECT_TRUE(Exists("Ann"));
    }
    EXPECT_FALSE(Exists("Ann"));
    {
        AccountTransaction transaction;
        EXPECT_TRUE(Make("Ann", "ann@example.com") && Make("Bob"));
        EXPECT_EQ(*OtherProcess()->Value("SELECT count(*) FROM accounts"), "0");
        EXPECT_TRUE(transaction.Commit());
    }
    EXPECT_TRUE(Exists("Ann") && Exists("Bob"));
}

TEST_F(Accounts, TransactionInsideAnotherDoesNothing) {
    for (const bool is_committed : {false, true}) {
        AccountTransaction outer;
        EXPECT_TRUE(Make("Ann"));
        {
            AccountTransaction inner;
            EXPECT_FALSE(inner.IsOpen());
            EXPECT_TRUE(Make("Bob"));
            EXPECT_FALSE(inner.Commit());
        }
        EXPECT_TRUE(Make("Carol"));
        EXPECT_EQ(*OtherProcess()->Value("SELECT count(*) FROM accounts"), "0");
        EXPECT_TRUE(!is_committed || outer.Commit());
        EXPECT_FALSE(is_committed && outer.Commit());
    }
    EXPECT_EQ(accounts_.AccountUIDList(), SStringList({"Ann", "Bob", "Carol"}));
}

// Rows refused in the middle of a change, as on a full disk.
TEST_F(Accounts, RefusedChangeTakesBackItsTransaction) {
    ASSERT_TRUE(Make("Ann", "ann@example.com"));
    const SString refusals[] = {RefuseRows("fields", "value = 'bad'"),
                                RollBackAtFieldsOfSame("account, name, value")};
    for (const SString& refusal : refusals) {
        ASSERT_TRUE(OtherProcess()->Execute(refusal.CString()));
        SAccountMod account;
        ASSERT_TRUE(accounts_.ModifyAccount("Ann", &account));
        ASSERT_TRUE(account.Set("Name", "Ann"));
        EXPECT_FALSE(account.Set("Name", {"bad", "bad"}));
        EXPECT_EQ(Field("Ann", "Name"), SStringList("Ann"));
        {
            AccountTransaction transaction;
            EXPECT_TRUE(Make("Bob"));
            EXPECT_TRUE(account.Set("Password", "secret"));
            EXPECT_FALSE(account.Set("Name", {"bad", "bad"}));
            EXPECT_FALSE(account.Set("Name", "good"));  // would be lasting by itself
            EXPECT_FALSE(Make("Carol"));
            EXPECT_FALSE(AccountTransaction().IsOpen());
            EXPECT_FALSE(transaction.Commit());
        }
        EXPECT_EQ(accounts_.AccountUIDList(), SStringList("Ann"));
        EXPECT_EQ(Field("Ann", "Name"), SStringList("Ann"));
        EXPECT_EQ(Field("Ann", "Password"), SStringList());
        EXPECT_TRUE(account.Set("Password", "later"));
        EXPECT_TRUE(account.Set("Password", SStringList()));
    }
}

// The library may give up the whole transaction at a refusal: what is written next would be lasting at once.
TEST_F(Accounts, NothingIsWrittenIntoATransactionThatIsLost) {
    ASSERT_TRUE(Make("Ann"));
    ASSERT_TRUE(OtherProcess()->Execute(RollBackAtFieldsOfSame("value").CString()));
    {
        AccountTransaction outer;
        EXPECT_TRUE(Make("Bob"));
        {
            const AccountTransaction inner;
            EXPECT_FALSE(Make("Bob2", {"Bob2"}));  // its name and its address are the same value
        }
        EXPECT_FALSE(Make("Carol"));
        EXPECT_FALSE(outer.Commit());
    }
    EXPECT_EQ(accounts_.AccountUIDList(), SStringList("Ann"));
    EXPECT_TRUE(Make("Dan"));
}

TEST_F(Accounts, FieldIsSetOnlyWhereEveryRowOfItIs) {
    ASSERT_TRUE(Make("Ann", "ann@example.com"));
    SAccountMod account;
    ASSERT_TRUE(accounts_.ModifyAccount("Ann", &account));
    const SString refusals[] = {RefuseToRemoveRows("fields", "name = 'SMTP-Address'"),
                                RefuseRows("fields", "value = 'a@example.com'"),
                                RefuseToRemoveRows("addresses", "1"),
                                RefuseRows("addresses", "address = 'a@example.com'"),
                                RefuseRows("addresses", "address = 'b@example.com'")};
    for (const SString& change : refusals) {
        const SString sql = data_.WriteConfig("refusal.sql", change);
        const SString said =
            ReadCommand("sqlite3 " + data_.Config("MTA-Accounts") + " <" + sql + " 2>&1").Join();
        ASSERT_EQ(said.Bytes().find("rror"), std::string::npos) << said;
        EXPECT_FALSE(account.Set("SMTP-Address", {"a@example.com", "b@example.com"})) << change;
        EXPECT_EQ(Field("Ann", "SMTP-Address"), SStringList("ann@example.com")) << change;
        EXPECT_EQ(Owner("ann@example.com"), "Ann") << change;
        EXPECT_EQ(Owner("a@example.com"), "") << change;
        ASSERT_TRUE(OtherProcess()->Execute("DROP INDEX refuse"));
    }
    EXPECT_TRUE(account.Set("SMTP-Address", {"a@example.com", "b@example.com"}));
}

TEST_F(Accounts, StandInOneFileAfterEachOperation) {
    const SString log = "MTA-Accounts MTA-Accounts-shm MTA-Accounts-wal";
    ASSERT_TRUE(Make("Ann", "ann@example.com"));
    EXPECT_EQ(data_.Listing(), "MTA-Accounts");
    EXPECT_TRUE(Exists("Ann"));
    EXPECT_EQ(data_.Listing(), "MTA-Accounts");
    {
        const AccountTransaction transaction;
        EXPECT_TRUE(Make("Bob"));
        EXPECT_EQ(data_.Listing(), log);
    }
    EXPECT_EQ(data_.Listing(), "MTA-Accounts");
    {
        const AccountSession session;
        EXPECT_EQ(data_.Listing(), "MTA-Accounts");  // nothing was asked yet
        EXPECT_TRUE(Make("Bob"));
        const AccountSession inner;
        EXPECT_TRUE(Exists("Bob"));
        EXPECT_EQ(data_.Listing(), log);
    }
    EXPECT_EQ(data_.Listing(), "MTA-Accounts");
    EXPECT_TRUE(SyncAccounts());
    EXPECT_EQ(data_.Listing(), "MTA-Accounts");
}

SString listing_at_signal;
const DataDirectory* directory_at_signal = nullptr;

TEST_F(Accounts, AreClosedBeforeASignalComes) {
    directory_at_signal = &data_;
    const auto before =
        signal(SIGTERM, [](int /*signal*/) { listing_at_signal = directory_at_signal->Listing(); });
    for (const EndingSignals signals : {EndingSignals::Blocked, EndingSignals::Handled}) {
        {
            const AccountSession session(signals);
            EXPECT_EQ(Make("Ann") || Exists("Ann"), true);
            raise(SIGTERM);
        }
        EXPECT_EQ(listing_at_signal == "MTA-Accounts", signals == EndingSignals::Blocked);
    }
    signal(SIGTERM, before);
}

// Each opens and closes the file for each account: the log comes and goes under the other.
TEST_F(Accounts, AreMadeByTwoProcessesAtOnce) {
    pid_t children[2] = {};
    for (pid_t& child : children) {
        child = fork();
        if (child != 0) continue;
        int made = 0;
        for (int i = 0; i < 100; ++i) made += Make("Account-" + SString(getpid()) + "-" + SString(i)) ? 1 : 0;
        _exit(made == 100 ? 0 : 1);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(accounts_.AccountCount(), 200);
    EXPECT_EQ(data_.Listing(), "MTA-Accounts");
}

TEST_F(Accounts, FailedTransactionWritesNothing) {
    ASSERT_TRUE(Make("Ann"));
    const auto other = OtherProcess();
    ASSERT_TRUE(other->Execute("BEGIN IMMEDIATE"));
    AccountTransaction transaction;
    EXPECT_FALSE(transaction.IsOpen());
    ASSERT_TRUE(other->Execute("ROLLBACK"));
    EXPECT_TRUE(Exists("Ann"));
    EXPECT_FALSE(Make("Bob"));
    EXPECT_FALSE(AccountTransaction().IsOpen());
    EXPECT_FALSE(transaction.Commit());
    EXPECT_FALSE(Exists("Bob"));
}

TEST_F(Accounts, MissingDatabaseHoldsNobody) {
    EXPECT_EQ(accounts_.Find("Ann"), Lookup::Missing);
    EXPECT_TRUE(accounts_.AccountUIDList().IsEmpty());
    EXPECT_EQ(accounts_.AccountCount(), 0);
    EXPECT_TRUE(SyncAccounts());
    EXPECT_EQ(data_.Listing(), "");
    data_.WriteConfig("MTA-Accounts", "");
    EXPECT_EQ(accounts_.Find("Ann"), Lookup::Missing);
    EXPECT_TRUE(Make("Ann"));
    PutEnv("TernHarbor", data_.Path() + "nowhere");
    ExpectNothingWorks(Lookup::Missing);
}

TEST_F(Accounts, UselessDatabaseAnswersZero) {
    PutEnv("TernHarbor", "");
    ExpectNothingWorks(Lookup::Failed);
    EXPECT_FALSE(SyncAccounts());
    PutEnv("TernHarbor", data_.Path());
    data_.WriteConfig("MTA-Accounts", SString('x', 5000));
    ExpectNothingWorks(Lookup::Failed);
    RemoveFile(data_.Config("MTA-Accounts"));
    MakeDir(data_.Config("MTA-Accounts"), 0750);
    ExpectNothingWorks(Lookup::Failed);
}

TEST_F(Accounts, LockedDatabaseAnswersZeroAfterAWait) {
    ASSERT_TRUE(Make("Ann"));
    const auto other = OtherProcess();
    ASSERT_TRUE(other->Execute("BEGIN IMMEDIATE"));
    SAccountMod account;
    EXPECT_FALSE(accounts_.ModifyAccount("Bob", &account));
    EXPECT_TRUE(Exists("Ann"));  // reading goes on
    ASSERT_TRUE(other->Execute("ROLLBACK"));
    EXPECT_TRUE(accounts_.ModifyAccount("Bob", &account));
}

TEST_F(Accounts, DatabaseInTheOldOnesPlaceIsNoticed) {
    ASSERT_TRUE(Make("Ann"));
    const SString path = data_.Config("MTA-Accounts");
    RemoveFile(path);
    EXPECT_FALSE(Exists("Ann"));
    EXPECT_TRUE(Make("Bob"));
    EXPECT_TRUE(FileExists(path));
    const DataDirectory elsewhere;
    EXPECT_FALSE(Exists("Bob"));
    PutEnv("TernHarbor", data_.Path());
    EXPECT_TRUE(Exists("Bob"));
}

TEST_F(Accounts, FullDiskLosesOnlyWhatItRefused) {
    ASSERT_TRUE(Make("Ann", "ann@example.com"));
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    const rlimit full{100000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
    SAccountMod account;
    const bool is_set =
        accounts_.ModifyAccount("Ann", &account) != 0 && account.Set("Name", SString('x', 500000));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    signal(SIGXFSZ, handler);
    EXPECT_FALSE(is_set);
    EXPECT_EQ(Field("Ann", "Name"), SStringList("Ann"));
    EXPECT_TRUE(Make("Bob"));
    EXPECT_TRUE(SyncAccounts());
}

TEST_F(Accounts, DamageAnywhereEndsNothing) {
    for (int i = 0; i < 30; ++i) {
        ASSERT_TRUE(Make("User" + SString(i), "user" + SString(i) + "@example.com"));
    }
    ASSERT_EQ(*OtherProcess()->Value("PRAGMA wal_checkpoint(TRUNCATE)"), "0");
    const std::string whole = MapFileRead(data_.Config("MTA-Accounts")).Bytes();
    for (size_t at = 0; at < whole.size(); at += 397) {
        const DataDirectory other;
        std::string damaged = whole;
        for (size_t i = at; i < std::min(at + 50, damaged.size()); ++i) {
            damaged[i] = static_cast<char>(damaged[i] ^ 0xa5);
        }
        other.WriteConfig("MTA-Accounts", SString(damaged));
        accounts_.AccountUIDList();
        Field("User7", "Name");
        Owner("user8@example.com");
        accounts_.GetLocalMailDomains();
        Make("Ann", "ann@example.com");
        accounts_.DeleteAccount("User9");
        SyncAccounts();
    }
}

// Another process makes accounts, each in a transaction, and tells of each; it is killed after a number of
// them.
TEST_F(Accounts, AreWholeOrAbsentAfterAKill) {
    constexpr int kAnnounced[] = {1, 2, 5, 20, 60};
    for (const int announced : kAnnounced) {
        const DataDirectory fresh;
        int channel[2];
        ASSERT_EQ(pipe(channel), 0);
        const pid_t child = fork();
        if (child == 0) {
            for (int i = 0;; ++i) {
                AccountTransaction transaction;
                SAccountMod account;
                accounts_.ModifyAccount("User" + SString(i), &account);
                for (const char* field : kFields) account.Set(field, "user" + SString(i) + "@example.com");
                if (!transaction.Commit() || write(channel[1], "x", 1) != 1) _exit(1);
            }
        }
        close(channel[1]);
        char byte = 0;
        for (int i = 0; i < announced; ++i) EXPECT_EQ(read(channel[0], &byte, 1), 1);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        close(channel[0]);

        const auto reader = sqlite::Connection::Open(fresh.Config("MTA-Accounts"), sqlite::Mode::Shared);
        ASSERT_NE(reader, nullptr);
        EXPECT_EQ(*reader->Value("PRAGMA integrity_check"), "ok");
        EXPECT_GE(accounts_.AccountCount(), announced);
        for (const SString& uid : accounts_.AccountUIDList()) {
            for (const char* field : kFields) EXPECT_EQ(Field(uid, field).Count(), 1U) << uid << field;
        }
    }
}

TEST(TypedName, HoldsOneString) {
    SAccountName name("ann");
    name.Set("bob");
    EXPECT_EQ(name.Get(), "bob");
    EXPECT_EQ(SGroupName("staff").Get(), "staff");
    EXPECT_EQ(SPopName().Get(), "");
    EXPECT_EQ(SToken("text", 7).Type(), 7);
    EXPECT_EQ(SToken("text", 7), SString("text"));
}

}  // namespace
