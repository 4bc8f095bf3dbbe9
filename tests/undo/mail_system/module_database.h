// A site with a new version of the module "Web", and a run that puts that into service, as far as it comes.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <map>
#include <tuple>

#include "install/mail_system/database_update.h"
#include "install/mail_system/settings_digest.h"
#include "install/record/access.h"
#include "install/record/file_id.h"
#include "support/database/sqlite.h"
#include "support/system/regular_file.h"
#include "tests/data_directory.h"
#include "undo/ways.h"

/// How far the run came.
enum Stage { Prepared, Carried, Linked, BackedUp, Exchanged };
constexpr Stage kStages[] = {Prepared, Carried, Linked, BackedUp, Exchanged};

class ModuleDatabase : public testing::Test {
  protected:
    static constexpr uid_t kMail = 2008;
    using Listing = std::map<SString, std::tuple<SString, mode_t, uid_t, gid_t>>;

    static void Put(const SString& database, const SString& key, const SStringList& values) {
        Sdbfile file(database, 0);
        ASSERT_TRUE(file.Open("/Config", 1) && file.Set(key, values));
    }
    static SString Socket(const SString& database) {
        Sdbfile file(database, 0);
        EXPECT_TRUE(file.Open("/Config", 0)) << database;
        return file.Get("Socket").Get(0);
    }

    void MakeSite(bool has_older_backup) {
        Put("Web", "Socket", "8080");
        Put("Web.install", "Socket", "80");
        Put("Web.install", "New", "yes");
        if (has_older_backup) Put("Web.backup", "Socket", "70");
        for (const char* name : {"Web", "Web.install", "Web.backup"}) {
            static_cast<void>(chown(data_.Config(name).CString(), kMail, kMail));
        }
        chmod(data_.Config("Web.install").CString(), 0600);
    }

    Listing Site() const {
        Listing site;
        for (const SString& path : ReadDir(data_.Path() + "config")) {
            struct stat status {};
            EXPECT_EQ(lstat(path.CString(), &status), 0);
            site[BaseName(path, "")] = {MapFileRead(path), status.st_mode, status.st_uid, status.st_gid};
        }
        return site;
    }

    /// Of a process that was killed in the middle: its pages are written, and the journal has the old ones.
    static void LeaveHalfWritten(const SString& path) {
        if (const pid_t child = fork(); child == 0) {
            const auto database = sqlite::Connection::Open(path, sqlite::Mode::Shared);
            database->Execute(
                "PRAGMA cache_size = 1; BEGIN IMMEDIATE; CREATE TABLE x (y); INSERT INTO x"
                " WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 500)"
                " SELECT hex(zeroblob(500)) FROM n");
            kill(getpid(), SIGKILL);
        } else {
            waitpid(child, nullptr, 0);
        }
        ASSERT_TRUE(EntryExists(path + "-journal"));
    }

    change::KeptFile Keep(const SString& name) const {
        const RegularFile file = OpenRegularFile(data_.Config(name), O_RDONLY, Links::NotAtEnd);
        if (!file) return {};
        beside_.Write(name, *file.descriptor.ReadAll(), 0600);
        return {true, name, *AccessOf(file.descriptor)};
    }

    /// As install/mail_system/module_databases.cc does it.
    void Run(Stage end) {
        const SString file = data_.Config("Web");
        const auto id = FileIdOf(file + ".install");
        ASSERT_TRUE(id);
        prepared_ = {file, Keep("Web.install"), *id, Keep("Web.backup")};
        changes_ = {prepared_};
        if (end == Prepared) return;
        Sdbfile in_use("Web", 0);
        ASSERT_TRUE(in_use.Hold() && UpdateDatabase("Web.install", &in_use, "/Config/Socket"));
        in_use.CloseDB();
        if (end == Carried) return;
        exchanged_ = {file, AccessOf(file).value(), SettingsDigestOf(file),
                      SettingsDigestOf(file + ".install"), *id};
        changes_.push_back(exchanged_);
        const bool is_kept = end == Exchanged || AddName(file, file + ".backup.new");
        ASSERT_TRUE(is_kept && (end != BackedUp || Rename(file + ".backup.new", file + ".backup")));
        if (end != Exchanged) return;
        ASSERT_TRUE(in_use.Hold());
        ASSERT_EQ(ExchangeDatabase(file, in_use), Exchange::Done);
    }

    /// By the mail owner, with its umask.
    void CopyBackup() {
        const SString backup = data_.Config("Web.backup");
        const SString bytes = MapFileRead(backup);
        ASSERT_TRUE(RemoveFile(backup));
        data_.WriteConfig("Web.backup", bytes);
        ASSERT_EQ(chown(backup.CString(), kMail, kMail), 0);
    }

    SStringList TakeExchangeBack() {
        return exchanged_.file.IsEmpty() ? SStringList() : TakeBack(exchanged_, run_).left;
    }
    SStringList TakeAllBack() {
        SStringList left = TakeExchangeBack();
        left.Push(TakeBack(prepared_, run_).left);
        return left;
    }
    Standing OfExchange() const { return LookAt(exchanged_, run_).standing; }
    Standing OfPreparation() const { return LookAt(prepared_, run_).standing; }

    DataDirectory data_;
    TemporaryFolder beside_;
    change::DatabasePrepared prepared_;
    change::DatabaseExchanged exchanged_;
    std::vector<Change> changes_;
    UndoneRun run_ = {beside_ / "", "", "", "", {}, &changes_};
};
