// Who a login is on this host, without asking the C library for each: getpwnam and getgrouplist read their
// whole file up to the match, which makes one look-up a login quadratic (3.5 ms and 7 ms each at 100,000
// entries).
//
// One enumeration of either database is kept, and read anew when its file has changed since, so that a login
// that has vanished is noticed as well. A login that the enumeration did not give is asked of the C library,
// as some directory services answer but do not enumerate.
#pragma once

#include <optional>
#include <vector>

#include "install/accounts/file_watch.h"
#include "install/accounts/name_table.h"
#include "support/system/identity.h"

class LoginIndex {
  public:
    /// The files whose changes make the enumerations stale.
    explicit LoginIndex(const SString& password_file = "/etc/passwd",
                        const SString& group_file = "/etc/group")
        : password_watch_(password_file), group_watch_(group_file) {}

    /// Nothing when the host does not know the login.
    std::optional<Identity> Find(const SString& login);

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
    NameTable<Ids> logins_;
    NameTable<gid_t> members_;  // logins in the member lists of groups
};
