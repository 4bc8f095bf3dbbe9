// A database's bytes as it stands, what waits in its write-ahead log included, without a change to any file
// and without a lock (https://sqlite.org/fileformat2.html).
#pragma once

#include <optional>

#include "support/text/sstring.h"

/// Nothing if it cannot be read, or if it is written all the while: with a rollback journal beside it, its
/// bytes are no whole database.
std::optional<SString> ReadSnapshot(const SString& path);

/// The database with the log's committed pages, as one without a log. Of a log that is torn or of another
/// database, what follows the last whole commit is left out.
SString WithLog(const SString& database, const SString& log);
