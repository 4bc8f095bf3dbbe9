// Creating the Postmaster's account, with its mail going to root's, told line by line.
#pragma once

#include "support/database/account.h"

/// False, the reason told, when the installation cannot go on. A Postmaster without a delivery is told as
/// well, but the dialogue can mend it.
bool CreatePostmasterWithRoot(SAccountDBMod* accounts);
