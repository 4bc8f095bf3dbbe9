#include "install/mail_system/settings_digest.h"

#include "install/record/checksum.h"
#include "support/database/snapshot.h"
#include "support/database/sqlite.h"

namespace {

/// Each text with its length: no two lists of texts look the same.
void Add(const SString& text, SString* all) {
    *all += SString(text.Length()) + ":" + text;
}

/// False if the rows cannot be read.
bool AddRows(sqlite::Connection* database, const char* query, int columns, SString* all) {
    sqlite::Statement statement = database->Prepare(query);
    sqlite::Execution rows(statement);
    sqlite::Step step = rows.Next();
    for (; step == sqlite::Step::Row; step = rows.Next()) {
        for (int column = 0; column < columns; ++column) Add(rows.Text(column), all);
    }
    *all += "\n";
    return step == sqlite::Step::Done;
}

}  // namespace

SString SettingsDigest(const SString& bytes) {
    const auto database = sqlite::Connection::OpenCopy(bytes);
    SString all;
    const bool is_read =
        database && AddRows(database.get(), "SELECT path FROM tables ORDER BY path", 1, &all) &&
        AddRows(database.get(), "SELECT path, key, value FROM settings ORDER BY path, key, position", 3,
                &all);
    return is_read ? Checksum(all) : SString();
}

SString SettingsDigestOf(const SString& path) {
    const auto bytes = ReadSnapshot(path);
    return bytes ? SettingsDigest(*bytes) : SString();
}
