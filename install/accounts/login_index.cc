// Reads the host's logins and group members into tables, and answers from them.
#include "install/accounts/login_index.h"

#include <grp.h>
#include <pwd.h>

#include <algorithm>
#include <cerrno>

#include "install/accounts/password_entries.h"
#include "install/settings.h"

namespace {

/// "+name" and "-name" are NIS directives, not logins, but getpwent returns them with user id 0.
bool IsLogin(const SString& name) {
    return name[0] != '+' && name[0] != '-';
}

}  // namespace

void LoginIndex::Refresh() {
    if (password_watch_.HasChanged()) ReadLogins();
    if (group_watch_.HasChanged()) ReadMembers();
}

std::optional<Identity> LoginIndex::Find(const SString& login) {
    auto rows = logins_.Find(login);
    if (!rows.empty()) {
        Ids ids = rows.front().value;  // of a duplicate login, the first counts, as with getpwnam
        return Identity{ids.uid, ids.gid, Groups(login, ids.gid)};
    }
    errno = 0;
    auto entry = EntryOf(login);
    if (!entry) {
        has_failed_ = errno != 0 || getpwuid(static_cast<uid_t>(gn_MailUID)) == nullptr;
        return std::nullopt;
    }
    return Identity{entry->uid, entry->gid, GroupsOf(login, entry->gid)};
}

void LoginIndex::ReadLogins() {
    logins_ = {};
    PasswordEntries entries;
    while (auto entry = entries.Next()) {
        if (IsLogin(entry->login)) logins_.Add(entry->login, {entry->uid, entry->gid});
    }
    logins_.Sort();
}

void LoginIndex::ReadMembers() {
    members_ = {};
    setgrent();
    while (const struct group* group = getgrent()) {
        if (group->gr_mem == nullptr) continue;
        for (char** member = group->gr_mem; *member != nullptr; ++member)
            members_.Add(*member, group->gr_gid);
    }
    endgrent();
    members_.Sort();
}

std::vector<gid_t> LoginIndex::Groups(const SString& login, gid_t primary) {
    std::vector<gid_t> groups = {primary};
    for (const auto& row : members_.Find(login)) {
        if (std::find(groups.begin(), groups.end(), row.value) == groups.end()) groups.push_back(row.value);
    }
    return groups;
}
