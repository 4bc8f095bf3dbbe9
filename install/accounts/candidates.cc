#include "install/accounts/candidates.h"

#include <grp.h>

#include <cerrno>

#include "install/settings.h"
#include "support/database/account.h"

namespace {

constexpr long kMostOwnAccounts = 8;  // prescribed: up to so many, the database counts as having no users

}  // namespace

const char* ReasonToSkip(const PasswordEntry& entry) {
    if (gstrl_BadUsers.Contains(entry.login)) return "system user";
    return entry.home.IsEmpty() ? "no home directory" : nullptr;
}

/// The group that owns users' maildrop files: "staff" where there is no "mail". A group database that fails
/// to tell must not give them away. With systemd among its sources it fails without an error, but the mail
/// owner's group, there at start-up, is then missing, too.
std::optional<gid_t> MailGroup() {
    errno = 0;
    const struct group* group = getgrnam("mail");
    const bool has_failed =
        group == nullptr && (errno != 0 || getgrgid(static_cast<gid_t>(gn_MailGID)) == nullptr);
    if (group == nullptr && !has_failed) group = getgrnam("staff");
    return group != nullptr ? std::optional(group->gr_gid) : std::nullopt;
}

bool HasUserAccounts(size_t to_be_made) {
    return SAccountDB().AccountCount() + static_cast<long>(to_be_made) > kMostOwnAccounts;
}
