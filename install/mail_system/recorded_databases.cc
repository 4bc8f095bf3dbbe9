#include "install/mail_system/recorded_databases.h"

#include <fcntl.h>

#include <optional>
#include <utility>

#include "install/mail_system/settings_digest.h"
#include "install/record/file_id.h"
#include "install/record/record.h"
#include "support/database/database_file.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "support/system/regular_file.h"

namespace {

RegularFile OpenPlain(const SString& path) {
    return OpenRegularFile(path, O_RDONLY, Links::NotAtEnd);
}

bool IsPlain(const SString& path) {
    return IsRegular(path) && LinkText(path).IsEmpty();
}

/// Without what waits in a journal beside it, a copy would be no whole database.
bool IsSettled(const SString& module) {
    const SString path = DatabasePath(module);
    return IsSecondName(path, path + ".install") || SettleDatabase(module + ".install");
}

SString DigestOf(const RegularFile& file) {
    const auto bytes = file ? file.descriptor.ReadAll() : std::nullopt;
    return bytes ? SettingsDigest(*bytes) : SString();
}

/// Root may have put it there for itself. Of a file with another name elsewhere, root would read what the
/// directory's owner may have linked here.
RegularFile OpenBackup(const SString& path) {
    RegularFile file = OpenPlain(path);
    if (file) return file;
    const AsRoot root;
    file = OpenPlain(path);
    return file && file.status.st_nlink == 1 ? std::move(file) : RegularFile();
}

/// A link or a directory is not kept.
change::KeptFile KeepBackup(const SString& module) {
    const SString path = DatabasePath(module) + ".backup";
    if (!EntryExists(path)) return {};
    const RegularFile backup = OpenBackup(path);
    return backup ? KeepBesideRecord(backup.descriptor, module + ".backup") : change::KeptFile{true};
}

}  // namespace

void RecordPreparation(const SString& module) {
    const SString file = DatabasePath(module);
    if (!IsRecording() || !IsPlain(file + ".install")) return;  // a link is not put into service
    const RegularFile new_version = OpenPlain(file + ".install");
    if (!new_version || !IsSettled(module)) return StopRecording();
    change::DatabasePrepared prepared;
    prepared.file = file;
    prepared.new_version = KeepBesideRecord(new_version.descriptor, module + ".install");
    prepared.id = FileIdOf(file + ".install").value_or(change::FileId());
    prepared.older_backup = KeepBackup(module);
    RecordChange(prepared);
}

void RecordExchange(const SString& module, const Sdbfile& in_use) {
    if (!IsRecording()) return;
    const SString file = DatabasePath(module);
    const auto bytes = in_use.Bytes();
    const SString before = bytes ? SettingsDigest(*bytes) : SString();
    // To open and close a second name of it would drop the lock (POSIX).
    const bool is_same = in_use.IsHeldAs(module + ".install");
    const SString after = is_same ? before : DigestOf(OpenPlain(file + ".install"));
    const auto access = AccessOf(file);
    const auto id = FileIdOf(file + ".install");
    if (!id || !EntryExists(file)) return;  // nothing will be exchanged
    if (!access) return StopRecording();
    RecordChange(change::DatabaseExchanged{file, *access, before, after, *id});
}

void RecordTable(const SString& module, const SString& table) {
    if (!IsRecording()) return;
    Sdbfile database(module, 0);
    if (database.Open(table, 0) != 0) return;
    if (!database.IsMissing()) return StopRecording();
    const SString file = DatabasePath(module);
    RecordChange(change::DatabaseMade{file, EntryExists(file) ? table : SString()});
}

void RecordSetting(const SString& module, const SString& table, const Sdbfile& opened, const SString& key,
                   const SStringList& values) {
    SStringList before;
    if (!IsRecording()) return;
    if (!opened.Read(key, &before)) return StopRecording();
    RecordChange(change::SettingChanged{DatabasePath(module), table, key, before, values});
}
