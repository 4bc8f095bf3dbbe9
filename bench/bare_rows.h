// What storing accounts owes: their rows, in one SQLite transaction, and nothing around them.
#pragma once

#include <cstdint>
#include <vector>

#include "support/text/sstring.h"

struct AccountRows {
    struct Field {
        SString name;
        int64_t position;
        SString value;
    };
    SString uid;
    std::vector<Field> fields;
    std::vector<SString> addresses;
};

/// The rows of a finished account database.
std::vector<AccountRows> ReadRows(const SString& database);
/// Makes a new database without rows.
bool MakeEmpty(const SString& database);
/// Adds the rows in one transaction, synced to the disk.
bool WriteRows(const SString& database, const std::vector<AccountRows>& accounts);
