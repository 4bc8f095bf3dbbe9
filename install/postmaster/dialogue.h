// Asks the questions about Postmaster's account, each until the answer is valid. Nullopt means that input
// ended first; "Installation aborted." has then been printed.
#pragma once

#include <optional>

#include "support/text/sstring_list.h"

/// At least 6 characters, the first no white space.
bool IsGoodPassword(const SString& text);
/// A host or domain name, an IPv4 address, or a network such as "10.0.0.0/8". Prescribed: "300.1.1.1" passes,
/// and so does anything that follows an address.
bool IsAccessDomain(const SString& text);

std::optional<SString> AskPassword();
/// Explains the list, for a new account.
void ExplainAccessDomains(const SString& host, const SString& domain);
/// The new list, or the current one if the answer has no entries. The domain is only shown as an example.
std::optional<SStringList> AskAccessDomains(const SStringList& current, const SString& domain);
