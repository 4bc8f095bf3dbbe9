// The questions of the account step: where to look for users, and the mail domains that each of them receives
// mail for.
#pragma once

#include <optional>

#include "support/text/sstring_list.h"

enum class AccountMethod { AllSources, PasswordFile, None, Quit };

/// The default is the password file, or none if accounts already exist.
AccountMethod AskAccountMethod(bool accounts_exist);

/// At least one domain, the most important first. Nullopt if the administrator quits.
std::optional<SStringList> AskMailDomains(const SString& host, const SString& domain);
