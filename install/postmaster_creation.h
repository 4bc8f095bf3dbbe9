// Creating the Postmaster's account, told line by line, with its mail going to root's account.
#pragma once

#include "support/account.h"

/// Makes root's account, too, where there is none. All of it becomes lasting at once. False, the reason told,
/// when the installation cannot go on; a Postmaster without a delivery is told and can be mended in the
/// dialogue.
bool CreatePostmasterWithRoot(SAccountDBMod* accounts);
