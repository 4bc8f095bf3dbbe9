// Runs the queries of docs/storage.md as they stand there, in the sqlite3 shell.
#include <gtest/gtest.h>

#include "support/database/account.h"
#include "support/database/sdbfile.h"
#include "support/database/sqlite.h"
#include "support/process/command.h"
#include "tests/data_directory.h"

namespace {

class StorageDocument : public testing::Test {
  protected:
    /// The example that follows a mark such as "<!-- accounts -->".
    SString Query(const std::string& mark) const {
        const std::string begin = "<!-- " + mark + " -->\n```sql\n";
        const size_t at = text_.find(begin);
        EXPECT_NE(at, std::string::npos) << mark;
        const size_t from = at + begin.size();
        return SString(text_.substr(from, text_.find("```", from) - from));
    }
    SString Run(const SString& database, const std::string& mark) const {
        const SString query = data_.WriteConfig("query.sql", Query(mark));
        return ReadCommand("sqlite3 " + data_.Config(database) + " <" + query + " 2>&1").Join();
    }

    /// Whether each of the database's tables stands in the document as it is, comments and blanks aside.
    void ExpectSchema(const SString& database) const {
        const SString document = SString(text_).S("--[^\n]*", "", "g").S("\\s+", "", "g");
        const auto connection = sqlite::Connection::Open(data_.Config(database), sqlite::Mode::Shared);
        ASSERT_NE(connection, nullptr);
        sqlite::Statement tables = connection->Prepare("SELECT sql FROM sqlite_schema WHERE sql IS NOT NULL");
        sqlite::Execution query(tables);
        while (query.Next() == sqlite::Step::Row) {
            const SString table = query.Text(0).S("\\s+", "", "g");
            EXPECT_NE(document.Bytes().find(table.Bytes()), std::string::npos) << table;
        }
    }

    DataDirectory data_;
    std::string text_ = MapFileRead(TEST_DATA "../../docs/storage.md").Bytes();
};

TEST_F(StorageDocument, ListsAccountsAndFindsOwners) {
    SAccountDBMod accounts;
    SAccountMod account;
    ASSERT_TRUE(accounts.ModifyAccount("Zoe", &account) && account.Set("Name", "Zoe Example") &&
                account.Set("SMTP-Address", {"Configuration@mail.example.com", "zoe@example.com"}) &&
                account.Lock());
    ASSERT_TRUE(accounts.ModifyAccount("Ann", &account));
    EXPECT_EQ(Run("MTA-Accounts", "accounts"),
              "Zoe|locked|Name|Zoe Example\n"
              "Zoe|locked|SMTP-Address|Configuration@mail.example.com\n"
              "Zoe|locked|SMTP-Address|zoe@example.com\n"
              "Ann|||\n");
    EXPECT_EQ(Run("MTA-Accounts", "owner"), "Zoe\n");
    ExpectSchema("MTA-Accounts");
}

TEST_F(StorageDocument, ShowsASetting) {
    Sdbfile database("WWW-Server", 0);
    ASSERT_TRUE(database.Open("/Config", 1) && database.Set("Socket", {"80", "8080"}));
    database.CloseDB();
    EXPECT_EQ(Run("WWW-Server", "setting"), "80\n8080\n");
    ExpectSchema("WWW-Server");
}

TEST_F(StorageDocument, CountsPositionsFromZero) {
    SAccountDBMod accounts;
    SAccountMod account;
    Sdbfile module("Module", 0);
    ASSERT_TRUE(accounts.ModifyAccount("Ann", &account) &&
                account.Set("SMTP-Address", {"a@b.example", "c@d.example"}));
    ASSERT_TRUE(module.Open("/Config", 1) && module.Set("WWWAccess", {"a.example", "b.example"}));
    const std::pair<const char*, const char*> tables[] = {{"MTA-Accounts", "fields"}, {"Module", "settings"}};
    for (const auto& [database, table] : tables) {
        const auto connection = sqlite::Connection::Open(data_.Config(database), sqlite::Mode::Shared);
        ASSERT_NE(connection, nullptr);
        const SString query = SString("SELECT group_concat(position) FROM (SELECT position FROM ") + table +
                              " ORDER BY position)";
        EXPECT_EQ(connection->Value(query.CString()), SString("0,1")) << database;
    }
}

}  // namespace
