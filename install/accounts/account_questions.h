// The questions of the account step: where the users come from who are to have accounts, and the mail domains
// that every user receives mail for.
#pragma once

#include <optional>

#include "support/text/sstring_list.h"

enum class AccountMethod { AllSources, PasswordFile, None, Quit };

/// Proposes the password file, or none where accounts exist already.
AccountMethod AskAccountMethod(bool accounts_exist);

/// The domains, most important one first, at least one. Nothing when the administrator quits.
std::optional<SStringList> AskMailDomains(const SString& host, const SString& domain);
