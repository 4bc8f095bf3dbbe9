// SQL that makes a database refuse rows of a test's choice, as a full disk would. Triggers would not do: the
// program runs none of a file's own.
#pragma once

#include "support/text/sstring.h"

/// Rows for which the condition holds are not taken: keeping the index up overflows. To be lifted by "DROP
/// INDEX refuse".
inline SString RefuseRows(const SString& table, const SString& condition) {
    return "CREATE INDEX refuse ON " + table + " (abs(-9223372036854775807 - (" + condition + ")));";
}

/// For the sqlite3 shell: rows that are there and for which the condition holds are not removed. The index is
/// made as one without rows, as making it would overflow.
inline SString RefuseToRemoveRows(const SString& table, const SString& condition) {
    const SString whole = RefuseRows(table, condition).S(";", "");
    return ".dbconfig defensive off\n" + whole + " WHERE 0;\nPRAGMA writable_schema = ON;\n" +
           "UPDATE sqlite_schema SET sql = replace(sql, ' WHERE 0', '') WHERE name = 'refuse';\n";
}

/// A second row with the same values in these columns makes SQLite give up the whole transaction.
inline SString RollBackAtFieldsOfSame(const SString& columns) {
    return "DROP TABLE fields;"
           "CREATE TABLE fields (account INTEGER NOT NULL, name TEXT NOT NULL, position INTEGER NOT NULL,"
           " value TEXT NOT NULL, PRIMARY KEY (account, name, position),"
           " UNIQUE (" +
           columns + ") ON CONFLICT ROLLBACK) WITHOUT ROWID;";
}
