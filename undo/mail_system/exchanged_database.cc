// A module's database that a new version has replaced: the version from before becomes the one in use again,
// as FILE.backup, or a copy of it, takes the name FILE in one rename. FILE.install is made anew by
// prepared_database.cc.
#include <sys/stat.h>

#include <algorithm>

#include "install/mail_system/settings_digest.h"
#include "install/record/access.h"
#include "install/record/file_id.h"
#include "support/database/sdbfile.h"
#include "support/system/descriptor.h"
#include "support/system/file.h"
#include "support/system/regular_file.h"
#include "support/text/printable.h"
#include "undo/entries.h"
#include "undo/mail_system/changes_of.h"
#include "undo/mail_system/kept_files.h"
#include "undo/mail_system/module_database.h"
#include "undo/mail_system/site_database.h"
#include "undo/mail_system/stored.h"
#include "undo/ways.h"

namespace {

using change::DatabaseExchanged;

/// Nothing of what is no database of a module's, or cannot be read.
std::optional<SString> Digest(const SString& path) {
    const SString digest = SettingsDigestOf(path);
    return digest.IsEmpty() ? std::nullopt : std::optional(digest);
}

/// By its file, as versions may have the same settings, and each run's new one waits under the same name.
bool IsNewVersion(const SString& path, const DatabaseExchanged& change) {
    return IsThatFile(path, change.id);
}

bool IsReplacedSince(const DatabaseExchanged& change) {
    return !IsNewVersion(change.file, change) && IsNewVersion(Backup(change.file), change);
}

/// Of a database that is not the run's new version.
Standing StandingOfOther(const DatabaseExchanged& change) {
    if (IsReplacedSince(change)) return Standing::Changed;
    if (!EntryExists(change.file)) return Standing::Changed;
    const auto digest = IsHalfWritten(change.file) ? std::nullopt : Digest(change.file);
    if (!digest) return Standing::Unknown;
    return digest == change.before ? Standing::AsBefore : Standing::Changed;
}

/// A half-written one is worked off before it is taken back, and looked at again then.
Standing StandingOfNewVersion(const DatabaseExchanged& change) {
    if (change.before.IsEmpty()) return Standing::ByHand;
    if (IsHalfWritten(change.file)) return Standing::AsLeft;
    const auto digest = Digest(change.file);
    if (!digest) return Standing::Unknown;
    // A link would be put into service itself, with what it leads to elsewhere.
    const bool has_backup = FileIdOf(Backup(change.file)) && Digest(Backup(change.file)) == change.before;
    return digest == change.after && has_backup ? Standing::AsLeft : Standing::Changed;
}

Standing StandingNow(const DatabaseExchanged& change) {
    if (IsNewVersion(NewVersion(change.file), change)) return Standing::AsBefore;
    return IsNewVersion(change.file, change) ? StandingOfNewVersion(change) : StandingOfOther(change);
}

/// Settings and tables that are not back yet, of which only this run knows.
bool HasMoreToTakeBack(const DatabaseExchanged& change, const UndoneRun& run) {
    return IsMoreStoredIn(SiteDatabase(change.file), Stored::SettingsAndTables, run);
}

/// From which FILE.install is made anew.
bool HasCopyOfNewVersion(const DatabaseExchanged& change, const UndoneRun& run) {
    bool has_copy = false;
    EachOf<change::DatabasePrepared>(run, [&](const auto& prepared) {
        has_copy |= prepared.file == change.file && KeptBytes(prepared.new_version, run.kept).has_value();
    });
    return has_copy;
}

SString LeftToYou(const DatabaseExchanged& change) {
    const SString file = Printable(change.file);
    if (change.before.IsEmpty()) {
        return file + " stays, as the version from before could not be read; that is " + file + ".backup";
    }
    return file +
           " stays, as it would be lost: its copy beside the record is gone; the version from before is " +
           file + ".backup";
}

SString LeftAlone(const DatabaseExchanged& change) {
    const SString file = Printable(change.file);
    if (IsReplacedSince(change)) return file + " was replaced by a later run: take that back first";
    const char* what = EntryExists(change.file) ? " was changed since Install replaced it" : " is gone";
    // An Undo that was killed may have put it back before somebody changed it.
    const bool has_backup = EntryExists(Backup(change.file));
    return file + what + (has_backup ? "; the version from before is " + file + ".backup" : SString());
}

/// Where the file could get no second name, the backup is a copy, and the mail owner's.
bool IsCopy(const DatabaseExchanged& change) {
    return AccessOf(Backup(change.file)) != change.access;
}

bool MakeFromCopy(const DatabaseExchanged& change) {
    const auto bytes = BytesOf(Backup(change.file));
    return bytes && MakeAnew(change.file, *bytes, change.access) && RemoveFile(Backup(change.file));
}

/// Where the new version was a second name of the old one, the first name has stayed the same file.
bool PutBack(const DatabaseExchanged& change) {
    const SString& file = change.file;
    bool is_back = false;
    if (IsSecondName(file, Backup(file))) {
        is_back = AddName(file, NewVersion(file)) && RemoveFile(Backup(file));
    } else if (IsCopy(change)) {
        is_back = MakeFromCopy(change);
    } else {
        is_back = Rename(Backup(file), file);
    }
    return is_back && SyncParent(file);
}

/// While it is held: somebody may have stored a setting since it was looked at.
bool IsStillAsLeft(const Sdbfile& held, const DatabaseExchanged& change) {
    const auto bytes = held.Bytes();
    return bytes && SettingsDigest(*bytes) == change.after && IsNewVersion(change.file, change);
}

TakenBack NotAsLeft(const DatabaseExchanged& change, const UndoneRun& run) {
    if (!IsMoreStoredIn(SiteDatabase(change.file), Stored::Settings, run)) return {true, LeftAlone(change)};
    return {false, Printable(change.file) + " is put back once the settings in it are"};
}

}  // namespace

Standing StandingOf(const DatabaseExchanged& change, const UndoneRun& run) {
    if (SiteDatabase(change.file).IsEmpty()) return Standing::Unknown;
    Standing standing = StandingNow(change);
    const bool is_ours = standing == Standing::Changed && IsNewVersion(change.file, change);
    if (is_ours && HasMoreToTakeBack(change, run)) standing = Standing::AsLeft;
    return standing == Standing::AsLeft && !HasCopyOfNewVersion(change, run) ? Standing::ByHand : standing;
}

Finding LookAt(const DatabaseExchanged& change, const UndoneRun& run) {
    if (SiteDatabase(change.file).IsEmpty()) return {Standing::Unknown, OfAnotherSite(change.file)};
    const SString file = Printable(change.file);
    const Standing standing = StandingOf(change, run);
    if (standing == Standing::AsBefore) return {};
    if (standing == Standing::Unknown) return {standing, file + " cannot be read"};
    if (standing == Standing::Changed) return {standing, LeftAlone(change)};
    if (standing == Standing::ByHand) return {standing, "", LeftToYou(change)};
    return {standing, "Put " + file + " back from " + file + ".backup"};
}

/// The database is held, as for the exchange.
TakenBack TakeBack(const DatabaseExchanged& change, const UndoneRun& run) {
    TakenBack in_use = {false, Printable(change.file) + " is in use"};
    const SString database = SiteDatabase(change.file);
    const bool is_ours = !database.IsEmpty() && IsNewVersion(change.file, change);
    if (is_ours && !SettleDatabase(database)) return in_use;
    const Finding finding = LookAt(change, run);
    if (finding.standing != Standing::AsLeft) return {true, LeftOf(finding)};
    if (IsHalfWritten(change.file)) return in_use;
    // Later changes of the run are back by now, unless they could not be taken back.
    if (StandingNow(change) != Standing::AsLeft) return NotAsLeft(change, run);
    Sdbfile held(database, 0);
    if (!held.Hold()) return in_use;
    if (!IsStillAsLeft(held, change)) return {true, LeftAlone(change)};
    if (PutBack(change)) return {};
    return {false, Printable(change.file) + " could not be put back from " + Printable(Backup(change.file))};
}
