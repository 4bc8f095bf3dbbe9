// Which of the host's logins get accounts, and what the account step finds before it asks.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>

#include "install/accounts/password_entries.h"

/// Why a login never gets an account; null where it does.
const char* ReasonToSkip(const PasswordEntry& entry);
/// The group that owns users' maildrop files: "staff" where there is no "mail". Nothing where there is
/// neither, or where the group database fails, which must not count as having no "mail".
std::optional<gid_t> MailGroup();
/// Whether the account database has more than the mail system's own accounts, of which so many are still to
/// be made.
bool HasUserAccounts(size_t to_be_made = 0);
