// What a run changes on the host, as its record keeps it: what it takes to tell later whether a change is
// still as the run left it, and to take it back. Each kind lists its fields once, for the writer and the
// reader (text.h).
//
// Paths and names are other people's bytes, kept as they are. Checksums and digests are SHA-256 in
// hexadecimal. A change is recorded before it is made: a run that was killed may have made all of it, a part
// or nothing of it.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <variant>
#include <vector>

#include "support/text/sstring_list.h"

namespace change {

/// Permission bits, written in octal.
struct Mode {
    mode_t bits = 0;
    bool operator==(const Mode&) const = default;
};

/// Who may do what with a file. The access list is the raw value of "system.posix_acl_access", in
/// hexadecimal; empty where there is none.
struct Access {
    uid_t owner = 0;
    gid_t group = 0;
    Mode mode;
    SString access_list;
    bool operator==(const Access&) const = default;

    template <typename Io>
    void Fields(Io& io) {
        io("owner", owner), io("group", group), io("mode", mode), io("access_list", access_list);
    }
};

/// Made as `unfinished`, given to its owner, and renamed.
struct DirectoryMade {
    static constexpr const char* kKind = "directory";
    SString path;
    SString unfinished;
    Access access;

    template <typename Io>
    void Fields(Io& io) {
        io("path", path), io("unfinished", unfinished), io("access", access);
    }
};

struct ModeSet {
    static constexpr const char* kKind = "mode";
    SString path;
    Mode before;
    Mode after;

    template <typename Io>
    void Fields(Io& io) {
        io("path", path), io("before", before), io("after", after);
    }
};

/// Rewritten in place; the backup has the old contents.
struct HostFileRewritten {
    static constexpr const char* kKind = "host file";
    SString path;
    SString backup;
    Mode mode;       // before write permission was added for the rewriting
    SString before;  // checksums of the contents
    SString after;

    template <typename Io>
    void Fields(Io& io) {
        io("path", path), io("backup", backup), io("mode", mode), io("before", before), io("after", after);
    }
};

/// A symbolic link put where a program was, a dangling link, or nothing.
struct LinkMade {
    static constexpr const char* kKind = "link";
    SString path;
    SString link;           // its text
    SString backup = {};    // what stood there was renamed to this; empty: nothing to keep
    SString before = {};    // its checksum (ChecksumAt); empty without a backup, and where it had none
    SString old_link = {};  // the text of the dangling link that was removed; empty: there was none
    uid_t old_owner = 0;    // of that
    gid_t old_group = 0;

    template <typename Io>
    void Fields(Io& io) {
        io("path", path), io("link", link), io("backup", backup), io("before", before);
        io("old_link", old_link), io("old_owner", old_owner), io("old_group", old_group);
    }
};

/// A file's bytes, kept beside the record because the run will change or replace it.
struct KeptFile {
    bool was_there = false;
    SString kept = {};  // the copy's name in the folder beside the record; empty: there is none
    Access access = {};

    template <typename Io>
    void Fields(Io& io) {
        io("was_there", was_there), io("kept", kept), io("access", access);
    }
};

/// Tells a file from others in its directory, and by its birth from a later one with the same inode number.
/// Not by the device, which may have another number after the next boot.
struct FileId {
    uint64_t inode = 0;
    int64_t born = 0;  // in nanoseconds; 0 where the file system does not say

    template <typename Io>
    void Fields(Io& io) {
        io("inode", inode), io("born", born);
    }
    bool operator==(const FileId&) const = default;
};

/// The new version of a module database, FILE.install, gets the site's settings, to be exchanged for FILE.
struct DatabasePrepared {
    static constexpr const char* kKind = "database prepared";
    SString file;           // FILE
    KeptFile new_version;   // FILE.install, as it was delivered
    FileId id;              // of FILE.install
    KeptFile older_backup;  // FILE.backup, which the exchange replaces

    template <typename Io>
    void Fields(Io& io) {
        io("file", file), io("new_version", new_version), io("id", id), io("older_backup", older_backup);
    }
};

/// FILE becomes FILE.backup, and FILE.install becomes FILE.
struct DatabaseExchanged {
    static constexpr const char* kKind = "database exchanged";
    SString file;
    Access access;   // of FILE, which a copy of it under the name FILE.backup has not
    SString before;  // digests of the settings in FILE and in FILE.install (settings_digest.h)
    SString after;
    FileId id;  // of FILE.install, which is FILE afterwards

    template <typename Io>
    void Fields(Io& io) {
        io("file", file), io("access", access), io("before", before), io("after", after), io("id", id);
    }
};

/// A database that was not there, or a table of it.
struct DatabaseMade {
    static constexpr const char* kKind = "database";
    SString file;
    SString table;  // empty: the whole file

    template <typename Io>
    void Fields(Io& io) {
        io("file", file), io("table", table);
    }
};

struct SettingChanged {
    static constexpr const char* kKind = "setting";
    SString database;
    SString table;
    SString key;
    SStringList before;
    SStringList after;

    template <typename Io>
    void Fields(Io& io) {
        io("database", database), io("table", table), io("key", key), io("before", before),
            io("after", after);
    }
};

/// An account, and a digest of its fields (install/accounts/account_digest.h), keyed by the file "key" beside
/// the record, as a digest of a password could be guessed.
struct Account {
    SString uid;
    SString digest;

    template <typename Io>
    void Fields(Io& io) {
        io("uid", uid), io("digest", digest);
    }
};

struct AccountsMade {
    static constexpr const char* kKind = "accounts";
    std::vector<Account> accounts;

    template <typename Io>
    void Fields(Io& io) {
        io("accounts", accounts);
    }
};

/// Of an account that was there, maybe made by this run: the digest is the one after the change.
struct AccountEdited {
    static constexpr const char* kKind = "account edited";
    Account account;
    SStringList fields;  // their names

    template <typename Io>
    void Fields(Io& io) {
        io("account", account), io("fields", fields);
    }
};

struct MessageQueued {
    static constexpr const char* kKind = "message";
    SString control;   // paths
    SStringList text;  // header and body, of a mail
    SString digest;    // of the bytes of all its files (MessageBytes), keyed as an account's

    template <typename Io>
    void Fields(Io& io) {
        io("control", control), io("text", text), io("digest", digest);
    }
};

struct Home {
    SString login;
    SString path;
    uid_t uid = 0;
    gid_t gid = 0;

    template <typename Io>
    void Fields(Io& io) {
        io("login", login), io("path", path), io("uid", uid), io("gid", gid);
    }
};

/// Homes that will be visited: each may get a notice, dated then.
struct NoticesLeft {
    static constexpr const char* kKind = "notices";
    SString host;  // that the notices tell of
    std::vector<Home> homes;

    template <typename Io>
    void Fields(Io& io) {
        io("host", host), io("homes", homes);
    }
};

/// A maildrop given to its user, without its access list, mode 0660.
struct MaildropGiven {
    static constexpr const char* kKind = "maildrop";
    SString path;
    Access before;
    uid_t user = 0;
    gid_t mail_group = 0;
    bool is_replaced = false;  // by an empty file of the user's: a third login's empty one goes
    int64_t process = 0;       // its id is part of the new file's name until then (PendingFile)

    template <typename Io>
    void Fields(Io& io) {
        io("path", path), io("before", before), io("user", user), io("mail_group", mail_group);
        io("is_replaced", is_replaced), io("process", process);
    }
};

struct Process {
    int64_t id = 0;
    SString name;
    uid_t user = 0;       // the real one
    SStringList command;  // its arguments, which it may have changed itself; empty, too, if they did not come
    SString unit;         // the systemd unit whose server it is, or a process of it; empty: none

    template <typename Io>
    void Fields(Io& io) {
        io("id", id), io("name", name), io("user", user), io("command", command), io("unit", unit);
    }
};

struct ProcessesSignalled {
    static constexpr const char* kKind = "signal";
    SString signal;  // "TERM", "HUP"
    std::vector<Process> processes;

    template <typename Io>
    void Fields(Io& io) {
        io("signal", signal), io("processes", processes);
    }
};

struct ServerStarted {
    static constexpr const char* kKind = "server";
    SString program;

    template <typename Io>
    void Fields(Io& io) {
        io("program", program);
    }
};

/// The last line of a run that was not killed.
struct RunEnded {
    static constexpr const char* kKind = "end";
    int64_t status = 0;

    template <typename Io>
    void Fields(Io& io) {
        io("status", status);
    }
};

}  // namespace change

using Change =
    std::variant<change::DirectoryMade, change::ModeSet, change::HostFileRewritten, change::LinkMade,
                 change::DatabasePrepared, change::DatabaseExchanged, change::DatabaseMade,
                 change::SettingChanged, change::AccountsMade, change::AccountEdited, change::MessageQueued,
                 change::NoticesLeft, change::MaildropGiven, change::ProcessesSignalled,
                 change::ServerStarted, change::RunEnded>;
