// What several parts of the Postmaster's set-up say when the account database refuses.
#pragma once

#include "support/text/sstring.h"

/// "This is most likely caused by a problem with permissions on DIRECTORY or if the disk has filled up."
SString LikelyCause();
/// The error, what the account database's directory should look like, whom to ask, and the end: false, for
/// the step to return. Begins a line.
bool AbortSetup(const SString& error);
bool AbortInaccessible();
