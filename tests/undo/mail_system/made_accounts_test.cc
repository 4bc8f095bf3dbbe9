#include <gtest/gtest.h>

#include "install/accounts/account_digest.h"
#include "install/settings.h"
#include "tests/install/account_database.h"
#include "undo/ways.h"

namespace {

class MadeAccounts : public testing::Test {
  protected:
    MadeAccounts() {
        for (const char* uid : {"Anna", "Bruno", "Clara"}) {
            accounts_.Add(uid, SString(uid) + "@example.com");
            change_.accounts.push_back({uid, Digest(uid)});
        }
        run_.options.accounts = true;
    }
    ~MadeAccounts() override { gf_Killed = 0; }
    SString Digest(const SString& uid) const {
        SAccount account;
        EXPECT_TRUE(SAccountDB().GetAccountInfo(uid, &account));
        return AccountDigest(run_.key, account);
    }
    static void Edit(const SString& uid, const SString& field, const SStringList& values) {
        SAccountMod account;
        ASSERT_TRUE(SAccountDBMod().ModifyAccount(uid, &account) && account.Set(field, values));
    }

    AccountDatabase accounts_;
    std::vector<Change> changes_;
    UndoneRun run_ = {"", "the key", "", "", {}, &changes_};
    change::AccountsMade change_;
};

TEST_F(MadeAccounts, StayUnlessAskedFor) {
    run_.options.accounts = false;
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::Kept);
    EXPECT_EQ(LookAt(change_, run_).text, "3 accounts stay (--accounts takes them back)");
    EXPECT_TRUE(TakeBack(change_, run_).left.IsEmpty());
    EXPECT_EQ(accounts_.Uids().Count(), 3U);
}

TEST_F(MadeAccounts, AreDeletedWithTheirAddresses) {
    EXPECT_EQ(LookAt(change_, run_).text, "Delete 3 accounts, if not changed since");
    EXPECT_TRUE(TakeBack(change_, run_).left.IsEmpty());
    EXPECT_TRUE(accounts_.Uids().IsEmpty());
    EXPECT_TRUE(SAccountDB().GetLocalMailDomains().IsEmpty());
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::AsBefore);
    EXPECT_TRUE(TakeBack(change_, run_).left.IsEmpty());
}

/// Between the batches: a site's accounts may take seconds.
TEST_F(MadeAccounts, AreDeletedFurtherAfterASignal) {
    {
        AccountTransaction transaction;
        for (int i = 0; i < 1500; ++i) {
            const SString uid = "u" + SString(i);
            accounts_.Add(uid, uid + "@example.com");
            change_.accounts.push_back({uid, Digest(uid)});
        }
        ASSERT_TRUE(transaction.Commit());
    }
    gf_Killed = 1;
    const TakenBack taken = TakeBack(change_, run_);
    EXPECT_TRUE(taken.is_interrupted);
    EXPECT_FALSE(taken.is_whole);
    EXPECT_TRUE(taken.left.IsEmpty());
    EXPECT_EQ(accounts_.Uids().Count(), 503U);
    gf_Killed = 0;
    EXPECT_TRUE(TakeBack(change_, run_).is_whole);
    EXPECT_TRUE(accounts_.Uids().IsEmpty());
}

TEST_F(MadeAccounts, StayWhereSomebodyChangedThem) {
    Edit("Anna", "Finger-Info", "mine");
    SAccountMod locked;
    ASSERT_TRUE(SAccountDBMod().ModifyAccount("Bruno", &locked) && locked.Lock());
    accounts_.Add("Dora", "dora@example.com");
    const TakenBack taken = TakeBack(change_, run_);
    EXPECT_TRUE(taken.is_whole);
    EXPECT_EQ(taken.left, "Changed since, so kept: 2 accounts (Anna, Bruno)");
    EXPECT_EQ(accounts_.Uids(), SStringList({"Anna", "Bruno", "Dora"}));
}

TEST_F(MadeAccounts, GoAlsoAsTheRunItselfEditedThem) {
    Edit("Anna", "Password", "bodil4");
    changes_.push_back(change::AccountEdited{{"Anna", Digest("Anna")}, "Password"});
    changes_.push_back(change::AccountEdited{{"Bruno", "of an edit that a kill prevented"}, "Password"});
    EXPECT_TRUE(TakeBack(change_, run_).left.IsEmpty());
    EXPECT_TRUE(accounts_.Uids().IsEmpty());
}

TEST_F(MadeAccounts, StayWithoutTheKey) {
    run_.key = "";
    EXPECT_EQ(LookAt(change_, run_).standing, Standing::Unknown);
    EXPECT_TRUE(TakeBack(change_, run_).left.IsEmpty());
    EXPECT_EQ(accounts_.Uids().Count(), 3U);
}

TEST_F(MadeAccounts, StayWhileAnotherProcessWrites) {
    const auto other = sqlite::Connection::Open(accounts_.Path(), sqlite::Mode::Shared);
    const sqlite::Transaction lock(*other);
    const TakenBack taken = TakeBack(change_, run_);
    EXPECT_FALSE(taken.is_whole);
    EXPECT_EQ(taken.left.Count(), 1U);
    EXPECT_EQ(accounts_.Uids().Count(), 3U);
}

TEST_F(MadeAccounts, AreNotTakenForGoneWhereTheyCannotBeRead) {
    accounts_.Execute(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 70)"
        " INSERT INTO fields (account, name, position, value)"
        " SELECT id, 'Long', i, hex(zeroblob(500000)) FROM accounts, n WHERE uid = 'Anna'");
    const TakenBack taken = TakeBack(change_, run_);
    EXPECT_FALSE(taken.is_whole);
    EXPECT_TRUE(taken.left[0].StartsWith("1 account could not be deleted"));
    EXPECT_EQ(accounts_.Uids(), "Anna");
}

TEST_F(MadeAccounts, GoInSeveralTransactions) {
    change_.accounts.clear();
    const AccountSession session;
    {
        AccountTransaction transaction;
        for (int i = 0; i < 2500; ++i) accounts_.Add("U" + SString(i), "u" + SString(i) + "@example.com");
        ASSERT_TRUE(transaction.Commit());
    }
    for (int i = 0; i < 2500; ++i) change_.accounts.push_back({"U" + SString(i), Digest("U" + SString(i))});
    EXPECT_TRUE(TakeBack(change_, run_).left.IsEmpty());
    EXPECT_EQ(accounts_.Uids().Count(), 3U);
}

TEST_F(MadeAccounts, AreToldOnceWhenEdited) {
    const change::AccountEdited edited = {{"Anna", "x"}, SStringList({"Password", "Access-Domains"})};
    changes_ = {change_, edited};
    EXPECT_EQ(LookAt(edited, run_).standing, Standing::AsBefore);
    changes_ = {edited};
    EXPECT_EQ(LookAt(edited, run_).standing, Standing::Kept);
    EXPECT_EQ(
        LookAt(edited, run_).text,
        "The account Anna was there before, and keeps what Install stored in it: Password, Access-Domains");
    ASSERT_TRUE(SAccountDBMod().DeleteAccount("Anna"));
    EXPECT_EQ(LookAt(edited, run_).standing, Standing::AsBefore);
}

}  // namespace
