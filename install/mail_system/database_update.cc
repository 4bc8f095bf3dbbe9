#include "install/mail_system/database_update.h"

#include <fcntl.h>

#include <optional>
#include <utility>

#include "support/database/database_file.h"
#include "support/database/sdbfile.h"
#include "support/system/file.h"
#include "support/system/regular_file.h"

namespace {

constexpr mode_t kDatabaseMode = 0640;

struct Setting {
    SString table;
    SString key;
};

Setting SettingAt(SString address) {
    if (address.EndsWith("/")) address.Chop();
    SStringList parts = address.SplitExact("/");
    const SString key = parts.Pop();
    return {parts.Join("/"), key};
}

/// Reading comes first: a database in use that cannot be read at the moment is no reason to reset the site's
/// settings, so it fails the update, while a table that is not there has nothing to carry over.
bool CarryOver(Sdbfile* from, Sdbfile* to, const Setting& setting) {
    if (from->Open(setting.table, 0) == 0) return from->IsMissing();
    SStringList values;
    return from->Read(setting.key, &values) && to->Open(setting.table, 1) != 0 &&
           to->Set(setting.key, values) != 0;
}

bool CarryOverAll(const SString& from, const SString& to, SStringList addresses) {
    Sdbfile old_database(from, 0);
    Sdbfile new_database(to, 0);
    bool all = true;
    while (!addresses.IsEmpty()) {
        if (!CarryOver(&old_database, &new_database, SettingAt(addresses.Shift()))) all = false;
    }
    return all;
}

bool Settle(const SString& new_database, const SString& old_database) {
    return SettleDatabase(old_database) && SettleDatabase(new_database);
}

/// For a file that can have no second name: somebody else's, or one on a file system without hard links.
bool CopyTo(const SString& file, const SString& copy) {
    const RegularFile from = OpenRegularFile(file, O_RDONLY, Links::NotAtEnd);
    const std::optional<SString> bytes = from ? from.descriptor.ReadAll() : std::nullopt;
    if (!bytes) return false;
    const Descriptor to = Descriptor::Open(copy, O_WRONLY | O_CREAT | O_EXCL, kDatabaseMode);
    return to && to.WriteAll(*bytes) && to.Sync();
}

/// The backup is a second name for the database in use, so that this one is never without its own.
bool KeepPrevious(const SString& file) {
    const SString second_name = file + ".backup.new";
    RemoveFile(second_name);  // left by a run that was killed just here
    const bool kept = (AddName(file, second_name) || CopyTo(file, second_name)) &&
                      Rename(second_name, file + ".backup") && SyncParent(file);
    // Where the backup was a name of this very file already (a run killed before the exchange), the rename
    // did nothing, as POSIX has it for two names of one file.
    RemoveFile(second_name);
    return kept;
}

/// The old database is still in its place unless somebody else took it away; the rename puts it back then,
/// and does nothing otherwise, so that the second name is left to be removed.
bool RollBack(const SString& file) {
    if (!Rename(file + ".backup", file)) return false;
    RemoveFile(file + ".backup");
    SyncParent(file);
    return true;
}

}  // namespace

SNamedStringList ReadPreserveMap(const SStringList& lines) {
    SNamedStringList map;
    for (const SString& line : lines) {
        const SStringList parts = line.SplitExact("/", 2);
        if (parts.Count() == 2) map[parts[0]].Push("/" + parts[1]);
    }
    return map;
}

bool UpdateDatabase(const SString& new_database, const SString& old_database, SStringList addresses) {
    // Opened for writing, a new version that is gone (another run was faster) would be made anew, empty.
    return EntryExists(DatabasePath(new_database)) && Settle(new_database, old_database) &&
           CarryOverAll(old_database, new_database, std::move(addresses)) &&
           Settle(new_database, old_database);
}

Exchange ExchangeDatabase(const SString& file) {
    if (!KeepPrevious(file)) return Exchange::NotBackedUp;
    if (!Rename(file + ".install", file)) {
        return RollBack(file) ? Exchange::RolledBack : Exchange::NotRestored;
    }
    RemoveFile(file + ".install");  // still there where it was another name of the old database
    // A sync that fails costs the new version at a power failure, and the next run repeats this.
    SyncParent(file);
    return Exchange::Done;
}
