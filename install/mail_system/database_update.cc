#include "install/mail_system/database_update.h"

#include <fcntl.h>

#include <cerrno>
#include <optional>
#include <utility>

#include "install/record/file_id.h"
#include "support/database/database_file.h"
#include "support/system/descriptor.h"
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

/// A database in use that cannot be read fails the update: skipping it would reset the site's settings. A
/// missing table has nothing to carry over.
bool CarryOver(Sdbfile* from, Sdbfile* to, const Setting& setting) {
    if (from->Open(setting.table, 0) == 0) return from->IsMissing();
    SStringList values;
    return from->Read(setting.key, &values) && to->Open(setting.table, 1) != 0 &&
           to->Set(setting.key, values) != 0;
}

bool CarryOverAll(Sdbfile* from, const SString& to, SStringList addresses) {
    Sdbfile new_database(to, 0);
    bool all = true;
    while (!addresses.IsEmpty()) {
        if (!CarryOver(from, &new_database, SettingAt(addresses.Shift()))) all = false;
    }
    return all;
}

/// A link would be renamed itself, and might lead to the very file that it replaces.
bool IsPlainFile(const SString& path) {
    struct stat status {};
    return lstat(path.CString(), &status) == 0 && S_ISREG(status.st_mode);
}

/// What was copied there by hand may not be yet. One that may not be read is no worse for it.
bool IsOnDisk(const SString& path) {
    const RegularFile file = OpenRegularFile(path, O_RDONLY, Links::NotAtEnd);
    return file ? file.descriptor.Sync() : errno == EACCES;
}

/// If hard links are refused: the file is somebody else's, or the file system has none.
bool CopyTo(const Sdbfile& database, const SString& copy) {
    const std::optional<SString> bytes = database.Bytes();
    if (!bytes) return false;
    const Descriptor to = Descriptor::Open(copy, O_WRONLY | O_CREAT | O_EXCL, kDatabaseMode);
    return to && to.WriteAll(*bytes) && to.Sync();
}

/// The backup is a hard link (else a copy), so FILE never goes missing.
bool KeepPrevious(const SString& file, const Sdbfile& in_use) {
    const SString second_name = file + ".backup.new";
    RemoveFile(second_name);  // left by a run that was killed just here
    const bool kept = (AddName(file, second_name) || CopyTo(in_use, second_name)) &&
                      Rename(second_name, file + ".backup") && SyncParent(file);
    // After a run killed here the backup may be a link to this very file: rename does nothing then (POSIX).
    RemoveFile(second_name);
    return kept;
}

/// Usually FILE is still the old database and the rename of one link over the other does nothing, so the
/// backup is removed.
bool RollBack(const SString& file) {
    const SString backup = file + ".backup";
    // A copy would give another owner to FILE, which is still there.
    const bool is_copy = EntryExists(file) && !IsSecondName(file, backup);
    if (!is_copy && !Rename(backup, file)) return false;
    RemoveFile(backup);
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

bool UpdateDatabase(const SString& new_database, Sdbfile* in_use, SStringList addresses) {
    // If another run was faster, opening the new version for writing would make an empty one.
    if (!IsPlainFile(DatabasePath(new_database))) return false;
    if (in_use->IsHeldAs(new_database)) return true;  // a second name of the same file: nothing to copy
    return SettleDatabase(new_database) && CarryOverAll(in_use, new_database, std::move(addresses)) &&
           SettleDatabase(new_database) && IsOnDisk(DatabasePath(new_database));
}

Exchange ExchangeDatabase(const SString& file, const Sdbfile& in_use) {
    if (!KeepPrevious(file, in_use)) return Exchange::NotBackedUp;
    if (!Rename(file + ".install", file)) {
        return RollBack(file) ? Exchange::RolledBack : Exchange::NotRestored;
    }
    RemoveFile(file + ".install");  // still there if it was a hard link to the old one
    // If the sync fails, a power failure undoes the exchange, and the next run repeats it.
    SyncParent(file);
    return Exchange::Done;
}
