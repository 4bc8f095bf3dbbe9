// A module's database that a new version has replaced: the version from before becomes the one in use again.
//
//     FILE            the new version
//     FILE.backup     the version from before; it takes the name FILE in one rename
//     FILE.install    missing since the exchange; made anew by prepared_database.cc, after which nothing
//     tells any more
//                     that there was an exchange if both versions have the same settings
#include <sys/stat.h>

#include "install/mail_system/settings_digest.h"
#include "support/database/sdbfile.h"
#include "support/system/descriptor.h"
#include "support/system/file.h"
#include "support/system/regular_file.h"
#include "support/text/printable.h"
#include "undo/mail_system/changes_of.h"
#include "undo/mail_system/site_database.h"
#include "undo/ways.h"

namespace {

using change::DatabaseExchanged;

SString Backup(const SString& file) {
    return file + ".backup";
}

SString NewVersion(const SString& file) {
    return file + ".install";
}

/// Nothing of what is no database of a module's, or cannot be read.
std::optional<SString> Digest(const SString& path) {
    const SString digest = SettingsDigestOf(path);
    return digest.IsEmpty() ? std::nullopt : std::optional(digest);
}

bool IsStillPrepared(const DatabaseExchanged& change) {
    return EntryExists(NewVersion(change.file)) && Digest(NewVersion(change.file)) == change.after;
}

Standing StandingOf(const DatabaseExchanged& change) {
    const auto digest = Digest(change.file);
    if (!digest) return EntryExists(change.file) ? Standing::Unknown : Standing::Changed;
    if (digest != change.after) {
        return digest == change.before || IsStillPrepared(change) ? Standing::AsBefore : Standing::Changed;
    }
    const bool is_telling = change.before != change.after;
    const bool is_made = !EntryExists(NewVersion(change.file)) && EntryExists(Backup(change.file));
    if (!is_telling && !is_made) return Standing::AsBefore;
    return Digest(Backup(change.file)) == change.before ? Standing::AsLeft : Standing::Changed;
}

/// What the run changed later in the same database is taken back before this.
bool HasMoreToTakeBack(const DatabaseExchanged& change, const UndoneRun& run) {
    const SString name = SiteDatabase(change.file);
    bool has_more = false;
    EachOf<change::SettingChanged>(run, [&](const auto& setting) {
        has_more |=
            SiteDatabase(setting.database) == name && LookAt(setting, run).standing == Standing::AsLeft;
    });
    EachOf<change::DatabaseMade>(run, [&](const auto& made) {
        has_more |= SiteDatabase(made.file) == name && LookAt(made, run).standing == Standing::AsLeft;
    });
    return has_more;
}

SString LeftAlone(const DatabaseExchanged& change) {
    const SString file = Printable(change.file);
    return file + " was changed since Install replaced it; the version from before is " + file + ".backup";
}

/// Where the new version was a second name of the old one, the first name has stayed the same file.
bool PutBack(const SString& file) {
    struct stat in_use {};
    struct stat backup {};
    if (stat(file.CString(), &in_use) != 0 || stat(Backup(file).CString(), &backup) != 0) return false;
    const bool is_put_back = IsSameFile(in_use, backup)
                                 ? AddName(file, NewVersion(file)) && RemoveFile(Backup(file))
                                 : Rename(Backup(file), file);
    return is_put_back && SyncParent(file);
}

bool IsAsSeen(const SString& file, const struct stat& seen) {
    struct stat now {};
    return stat(file.CString(), &now) == 0 && IsSameFile(now, seen) && now.st_size == seen.st_size &&
           now.st_mtim.tv_sec == seen.st_mtim.tv_sec && now.st_mtim.tv_nsec == seen.st_mtim.tv_nsec;
}

}  // namespace

Finding LookAt(const DatabaseExchanged& change, const UndoneRun& run) {
    if (SiteDatabase(change.file).IsEmpty()) return {Standing::Unknown, OfAnotherSite(change.file)};
    const SString file = Printable(change.file);
    Standing standing = StandingOf(change);
    if (standing == Standing::AsBefore) return {};
    if (standing == Standing::Unknown) return {standing, file + " cannot be read"};
    if (standing == Standing::Changed && HasMoreToTakeBack(change, run)) standing = Standing::AsLeft;
    if (standing == Standing::Changed) return {standing, LeftAlone(change)};
    return {standing, "Put " + file + " back from " + file + ".backup"};
}

/// The database is held, as for the exchange; reading it for the digest would let go of it (POSIX).
TakenBack TakeBack(const DatabaseExchanged& change, const UndoneRun& run) {
    struct stat seen {};
    if (stat(change.file.CString(), &seen) != 0) return {true, LeftAlone(change)};
    UndoneRun last = run;
    last.changes = nullptr;  // later ones are back by now, or will not come back
    const Finding finding = LookAt(change, last);
    if (finding.standing == Standing::AsBefore) return {};
    if (finding.standing != Standing::AsLeft) return {true, finding.text};
    Sdbfile in_use(SiteDatabase(change.file), 0);
    if (!in_use.Hold() || !IsAsSeen(change.file, seen)) {
        return {false, Printable(change.file) + " is in use"};
    }
    if (PutBack(change.file)) return {};
    return {false, Printable(change.file) + " could not be put back from " + Printable(Backup(change.file))};
}
