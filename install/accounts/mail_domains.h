// The dialogue in which the administrator lists the mail domains that every user receives mail for.
#pragma once

#include <optional>

#include "support/text/sstring_list.h"

/// The domains, most important one first, at least one. Nothing when the administrator quits.
std::optional<SStringList> AskMailDomains(const SString& host, const SString& domain);
