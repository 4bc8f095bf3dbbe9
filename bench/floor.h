// The least that storing accounts costs: the same rows in one SQLite transaction.
#pragma once

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

/// What a finished account database holds.
std::vector<AccountRows> ReadRows(const SString& database);
/// Makes a new database without rows.
bool MakeEmpty(const SString& database);
/// Adds these rows to it in one transaction, and has them on the disk.
bool WriteRows(const SString& database, const std::vector<AccountRows>& accounts);
