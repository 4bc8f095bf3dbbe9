// The accounts that receive the mail system's own control traffic.
#pragma once

#include <cstddef>

/// How many of them SetupSpecialAccounts would make now.
size_t MissingSpecialAccounts();
