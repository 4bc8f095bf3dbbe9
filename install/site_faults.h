// What an administrator is told who has to mend a fact of the site.
#pragma once

#include "install/site.h"

/// Prints what is wrong and whom to ask.
void TellFault(SiteFault fault);
