// Creates Postmaster's account, with its mail going to root's, and shows the progress.
#pragma once

#include "support/database/account.h"

/// False, with the reason printed, if the installation cannot go on. A Postmaster without deliveries is
/// reported but not fatal: the dialogue asks for deliveries next.
bool CreatePostmasterWithRoot(SAccountDBMod* accounts);
