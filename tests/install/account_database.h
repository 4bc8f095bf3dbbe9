// An account database for one test, in a fresh data directory.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include "support/database/account.h"
#include "support/database/sqlite.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "tests/refusal.h"
#include "tests/temporary_folder.h"

class AccountDatabase {
  public:
    AccountDatabase() {
        chmod((folder_ / "").CString(), 0755);  // homes lie in it
        PutEnv("TernHarbor", folder_ / "");
        PutEnv("ModuleName", "Install");
        for (const char* name : {"config", "control", "messages"}) MakeDir(folder_ / name, 0770);
    }

    const TemporaryFolder& Folder() const { return folder_; }
    SString Path() const { return folder_ / "config/MTA-Accounts"; }

    void Add(const SString& uid, const SString& address) {
        SAccountDBMod database;
        SAccountMod account;
        ASSERT_TRUE(database.ModifyAccount(uid, &account) && account.Set("SMTP-Address", address));
    }
    SStringList Values(const SString& uid, const SString& field) {
        SAccount account;
        SAccountDB().GetAccountInfo(uid, &account);
        return account.Get(field);
    }
    SStringList Uids() { return SAccountDB().AccountUIDList(); }

    /// Makes the database refuse field rows for which the SQL condition holds (name, value), as a full disk
    /// would, in a place of the test's choice.
    void Refuse(const SString& condition) {
        Add("Somebody", "somebody@else.example");  // so that there is a database
        Execute(RefuseRows("fields", condition));
    }
    void Execute(const SString& sql) {
        const auto connection = sqlite::Connection::Open(Path(), sqlite::Mode::Shared);
        ASSERT_NE(connection, nullptr);
        ASSERT_TRUE(connection->Execute(sql.CString()));
    }

  private:
    TemporaryFolder folder_;
};
