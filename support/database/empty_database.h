// Removes databases and tables of which nothing is left.
#pragma once

#include "support/text/sstring.h"

/// NotEmpty: something is stored in it, or it is no database of the mail system. Failed: locked for more than
/// 5 s, or refused by the system.
enum class Removal { Removed, NotEmpty, Failed };

/// Removed, too, if there is none. Nothing can be stored in it between the look and the removal.
Removal RemoveEmptyTable(const SString& database, const SString& table_path);
/// Of a module (no settings in any table) or of the accounts (no accounts). The caller has it not open.
Removal RemoveEmptyDatabase(const SString& database);

/// What RemoveEmptyDatabase would come to; changes nothing.
bool IsEmptyDatabase(const SString& database);
