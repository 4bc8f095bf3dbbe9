// This process's environment variables and id.
#pragma once

#include "support/text/sstring.h"

/// Empty when the variable is unset.
SString GetEnv(const char* name);
/// For this process and those that it starts.
void PutEnv(const SString& name, const SString& value);
/// In decimal.
SString ProcessIdString();
