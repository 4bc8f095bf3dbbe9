// The process's effective identity: the only place that calls seteuid and its kin. The real user stays root,
// so a scope can take another identity and the end of the scope, on every path, gives the old one back.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "support/text/sstring.h"

/// Nobody's user or group id: chown, seteuid and their kin take it for "leave it as it is".
constexpr uint32_t kNoId = UINT32_MAX;

/// Who a user is to the system.
struct Identity {
    uid_t uid = 0;
    gid_t gid = 0;
    std::vector<gid_t> groups;  // supplementary ones, the primary one included

    bool IsSomebody() const { return uid != kNoId && gid != kNoId; }
};

/// The mail system's owner for good: group, supplementary groups, then user. False when the system refuses
/// any of it or leaves the process a capability (capabilities(7)); its identity is undefined then.
bool BecomeMailOwner(const SString& login, uid_t uid, gid_t gid);

/// The real user's (root's) rights for a scope; groups stay. After it the effective user is the one from
/// before, or the one given; where that is refused, the program ends as in AsUser.
class AsRoot {
  public:
    AsRoot();
    explicit AsRoot(uid_t after);
    ~AsRoot();
    AsRoot(const AsRoot&) = delete;
    AsRoot& operator=(const AsRoot&) = delete;

  private:
    uid_t after_;
};

/// For users' identities that are taken one after the other, with as few calls as that needs: in between the
/// process is root, with the last user's groups. Nothing else may change the identity meanwhile, but AsRoot.
/// The scope's end gives the identity from before back; where that is refused, the program ends with status
/// 2, as it would otherwise act as somebody else.
class ManyUsers {
  public:
    ManyUsers();
    ~ManyUsers();
    ManyUsers(const ManyUsers&) = delete;
    ManyUsers& operator=(const ManyUsers&) = delete;

  private:
    friend class AsUser;
    bool Take(const Identity& user);
    void Leave();
    bool Change(const Identity& to);
    bool ChangeUser(uid_t uid);

    uid_t root_;
    std::optional<Identity> before_;  // nothing if it could not be found out
    Identity now_;
};

/// A user's identity for a scope. If the system refuses any of it, nothing is changed and IsTaken is false:
/// do nothing for the user then.
class AsUser {
  public:
    explicit AsUser(const Identity& user);
    AsUser(ManyUsers* users, const Identity& user);
    ~AsUser();
    AsUser(const AsUser&) = delete;
    AsUser& operator=(const AsUser&) = delete;
    bool IsTaken() const { return taken_; }

  private:
    std::optional<ManyUsers> own_;
    ManyUsers* users_;
    bool taken_;
};

/// The supplementary groups of a login (getgrouplist), its primary group included.
std::vector<gid_t> GroupsOf(const SString& login, gid_t gid);

/// In a child before exec: root as real and effective user, with the groups that the process was started with
/// (main calls RememberGroups first).
void RememberGroups();
bool BecomeRootAsStarted();
