// The questions about the Postmaster's account, each asked until its answer is good. Nothing in the result
// means that input ended before that; "Installation aborted." has been printed then.
#pragma once

#include <optional>

#include "support/text/sstring_list.h"

/// At least 6 characters, the first no white space.
bool IsGoodPassword(const SString& text);
/// A host or domain name, an IPv4 address, or a network such as "10.0.0.0/8". Only the counts of digits of an
/// address are looked at.
bool IsAccessDomain(const SString& text);

std::optional<SString> AskPassword();
/// What the list is for, for an account that never had one.
void ExplainAccessDomains(const SString& host, const SString& domain);
/// The new list; the current one when the answer has no entries. The mail domain serves as an example.
std::optional<SStringList> AskAccessDomains(const SStringList& current, const SString& domain);
