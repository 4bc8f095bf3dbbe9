// Making the accounts "Postmaster" and, for the host's root user, "Root". Both are locked and get a generated
// password. Neither is ever written over an account that exists.
#pragma once

#include "support/account.h"

/// The Postmaster's account but for its deliveries, bound to the modification. False when any of it was
/// refused.
bool CreatePostmaster(SAccountDBMod* accounts, SAccountMod* postmaster, const SString& host,
                      const SString& domain);
/// Root's account; gives its UID, which is "Root" unless that is somebody else's. Empty when refused.
SString CreateRoot(SAccountDBMod* accounts, const SString& host, const SString& domain);
/// The address by which root's account is known.
SString RootAddress(const SString& host);
