// Looks up a login's ids and groups in tables: getpwnam and getgrouplist scan their file up to the match, so
// one call per login is quadratic (3.5 ms and 7 ms a call at 100,000 entries).
//
// A login missing from the tables is looked up with the C library: some directory services answer but do not
// enumerate.
#pragma once

#include <optional>
#include <vector>

#include "install/accounts/file_watch.h"
#include "install/accounts/name_table.h"
#include "support/system/identity.h"

class LoginIndex {
  public:
    /// The files whose changes make the tables stale.
    explicit LoginIndex(const SString& password_file = "/etc/passwd",
                        const SString& group_file = "/etc/group")
        : password_watch_(password_file), group_watch_(group_file) {}

    /// Reads the tables at the first call, and once their file has changed: a deleted login is noticed then.
    void Refresh();
    /// Nullopt if the host does not know the login, or could not tell.
    std::optional<Identity> Find(const SString& login);
    /// Whether it could not tell of the login that was not found last. With systemd among its sources it
    /// fails without an error, but the mail owner, there at start-up, is then missing, too.
    bool HasFailed() const { return has_failed_; }

  private:
    struct Ids {
        uid_t uid;
        gid_t gid;
    };
    void ReadLogins();
    void ReadMembers();
    std::vector<gid_t> Groups(const SString& login, gid_t primary);

    FileWatch password_watch_;
    FileWatch group_watch_;
    bool has_failed_ = false;
    NameTable<Ids> logins_;
    NameTable<gid_t> members_;  // a row for each group that lists the login
};
