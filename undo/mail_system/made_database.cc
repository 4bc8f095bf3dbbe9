// A database, or a table of one, that the run made: removed where nothing is stored in it.
#include "support/database/database_file.h"
#include "support/database/empty_database.h"
#include "support/database/sdbfile.h"
#include "support/system/file.h"
#include "support/text/printable.h"
#include "undo/mail_system/changes_of.h"
#include "undo/mail_system/site_database.h"
#include "undo/mail_system/stored.h"
#include "undo/ways.h"

namespace {

using change::DatabaseMade;

const SString kAccounts = "MTA-Accounts";

SString What(const DatabaseMade& change) {
    const SString file = Printable(change.file);
    return change.table.IsEmpty() ? file : "the table " + Printable(change.table) + " of " + file;
}

bool IsThere(const DatabaseMade& change, const SString& database) {
    if (change.table.IsEmpty()) return EntryExists(DatabasePath(database));
    Sdbfile file(database, 0);
    return file.Open(change.table, 0) != 0 || !file.IsMissing();
}

bool WillHaveAccounts(const DatabaseMade& change, const SString& database, const UndoneRun& run) {
    const bool will_go = run.options.accounts && !run.key.IsEmpty();
    return change.table.IsEmpty() && database == kAccounts && !will_go && !IsEmptyDatabase(database);
}

/// Of what the run stored there, what could not be taken back is not somebody's.
TakenBack NotEmpty(const DatabaseMade& change, const SString& database, const UndoneRun& run) {
    if (!IsMoreStoredIn(database, Stored::Settings, run))
        return {true, What(change) + " holds more by now, and stays"};
    return {false, What(change) + " is removed once what Install stored there is taken back"};
}

}  // namespace

Finding LookAt(const DatabaseMade& change, const UndoneRun& run) {
    const SString database = SiteDatabase(change.file);
    if (database.IsEmpty()) return {Standing::Unknown, OfAnotherSite(change.file)};
    if (!IsThere(change, database)) return {};
    if (WillHaveAccounts(change, database, run)) {
        return {Standing::Kept, Printable(change.file) + " stays, with its accounts"};
    }
    return {Standing::AsLeft, "Remove " + What(change) + ", if nothing else is stored there"};
}

TakenBack TakeBack(const DatabaseMade& change, const UndoneRun& run) {
    const SString database = SiteDatabase(change.file);
    if (database.IsEmpty()) return {true, OfAnotherSite(change.file)};
    const Removal removal =
        change.table.IsEmpty() ? RemoveEmptyDatabase(database) : RemoveEmptyTable(database, change.table);
    if (removal == Removal::Removed) return {};
    if (removal == Removal::NotEmpty) return NotEmpty(change, database, run);
    return {false, What(change) + " could not be removed: it is in use, or may not be written"};
}
