// The new version of a module's database, into which the site's settings were copied: it is made anew as it
// was delivered, and so is the older backup that the exchange replaced. The new version comes first, as
// exchanged_database.cc tells by it that there was an exchange.
//
// What is there instead is replaced only if it is what the run made of it: this very file, with no other
// settings than were delivered or carried over (a newer version may have been copied into it since), or a
// second name or copy of the database in use, which a killed exchange leaves.
#include <algorithm>

#include "install/mail_system/settings_digest.h"
#include "install/record/file_id.h"
#include "support/database/sdbfile.h"
#include "support/database/snapshot.h"
#include "support/system/descriptor.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "support/text/printable.h"
#include "undo/later_runs.h"
#include "undo/mail_system/kept_files.h"
#include "undo/mail_system/module_database.h"
#include "undo/mail_system/site_database.h"
#include "undo/ways.h"

namespace {

using change::DatabasePrepared;

enum class Part { AsBefore, ToDo, Others, Gone, Lost };

SString UnfinishedBackup(const DatabasePrepared& change) {
    return Backup(change.file) + ".new";
}

/// Once the exchange is recorded, all settings had been carried over.
bool IsWhatTheRunWrote(const DatabasePrepared& change, const UndoneRun& run, const SString& delivered) {
    const auto bytes = ReadSnapshot(NewVersion(change.file));
    if (!bytes) return false;
    const auto exchange = ExchangeOf(change.file, run);
    if (!exchange) return IsCarriedOver(*bytes, delivered, ReadSnapshot(change.file));
    const SString digest = SettingsDigest(*bytes);
    return !digest.IsEmpty() && digest == exchange->after;
}

/// Nothing but the exchange takes the name away, and Undo when it was killed after taking that back.
Part PartOfMissing(const DatabasePrepared& change, const UndoneRun& run, bool is_kept) {
    if (!ExchangeOf(change.file, run)) return Part::Gone;
    return is_kept ? Part::ToDo : Part::Lost;
}

bool IsFound(const FoundVersion& found, const DatabasePrepared& change, const SString& bytes) {
    return found.prepared.file == change.file && found.prepared.id == change.id &&
           bytes == KeptBytes(found.prepared.new_version, found.kept);
}

/// The file that the run worked on, also where a later run has found it, and an Undo of that has made it
/// anew.
bool IsRunsFile(const DatabasePrepared& change, const UndoneRun& run) {
    const SString path = NewVersion(change.file);
    if (IsThatFile(path, change.id)) return true;
    const auto bytes = run.later == nullptr ? std::nullopt : BytesOf(path);
    return bytes && std::ranges::any_of(run.later->FoundVersions(), [&](const FoundVersion& found) {
               return IsFound(found, change, *bytes);
           });
}

/// Of a half-written one, taking back tells when that is worked off.
Part PartOfNewVersion(const DatabasePrepared& change, const UndoneRun& run) {
    const SString path = NewVersion(change.file);
    const auto kept = KeptBytes(change.new_version, run.kept);
    if (!EntryExists(path)) return PartOfMissing(change, run, kept.has_value());
    const bool is_runs_file = IsRunsFile(change, run);
    const bool has_journal = is_runs_file && EntryExists(path + "-journal");
    if (kept && BytesOf(path) == *kept) return has_journal ? Part::ToDo : Part::AsBefore;
    if (!is_runs_file) return Part::Others;
    if (!kept) return Part::Lost;
    return IsHalfWritten(path) || IsWhatTheRunWrote(change, run, *kept) ? Part::ToDo : Part::Others;
}

/// Only to be compared: it may be root's own.
std::optional<SString> BackupBytes(const DatabasePrepared& change) {
    const AsRoot root;
    return BytesOf(Backup(change.file));
}

/// As it will be, too, once an exchange has been taken back.
Part PartOfMissingBackup(const DatabasePrepared& change, const UndoneRun& run) {
    if (!change.older_backup.was_there) return Part::AsBefore;
    return KeptBytes(change.older_backup, run.kept) ? Part::ToDo : Part::Lost;
}

/// A second name or a copy of the database from before, which a killed exchange leaves.
bool IsOfDatabaseBefore(const SString& backup, const DatabasePrepared& change, const UndoneRun& run) {
    if (IsSecondName(change.file, Backup(change.file))) return true;
    const SString before = ExchangeOf(change.file, run)->before;
    return backup == BytesOf(change.file) && !before.IsEmpty() && SettingsDigest(backup) == before;
}

/// Nothing but the exchange touches it. A link or a directory, which are not kept, is never the run's.
Part PartOfBackup(const DatabasePrepared& change, const UndoneRun& run) {
    if (!ExchangeOf(change.file, run)) return Part::AsBefore;
    const change::KeptFile& older = change.older_backup;
    const auto kept = KeptBytes(older, run.kept);
    const Part to_do = older.was_there && !kept ? Part::Lost : Part::ToDo;
    if (!EntryExists(Backup(change.file))) return PartOfMissingBackup(change, run);
    const auto bytes = BackupBytes(change);
    if (kept && bytes == kept) return Part::AsBefore;
    if (bytes && IsOfDatabaseBefore(*bytes, change, run)) return to_do;
    return older.was_there && older.kept.IsEmpty() ? Part::AsBefore : Part::Others;
}

/// Of the exchange that followed; AsBefore if none did.
Standing StandingOfExchange(const DatabasePrepared& change, const UndoneRun& run) {
    const auto exchange = ExchangeOf(change.file, run);
    return exchange ? StandingOf(*exchange, run) : Standing::AsBefore;
}

bool IsNewVersionThere(const DatabasePrepared& change) {
    return IsThatFile(change.file, change.id) || IsThatFile(Backup(change.file), change.id);
}

/// Whether the versions are still exchanged, changed since or not: what stays in use is told with that.
bool IsStillExchanged(const DatabasePrepared& change, const UndoneRun& run) {
    if (StandingOfExchange(change, run) == Standing::AsBefore) return false;
    if (IsNewVersionThere(change)) return true;
    const SString before = ExchangeOf(change.file, run)->before;
    return !before.IsEmpty() && SettingsDigestOf(Backup(change.file)) == before;
}

/// The copy is all that is left of what was there.
SString CopyOf(const change::KeptFile& kept, const UndoneRun& run) {
    return KeptBytes(kept, run.kept) ? "; the one from before is " + Printable(run.kept + kept.kept)
                                     : SString();
}

SStringList LeftAlone(const DatabasePrepared& change, const UndoneRun& run, Part new_version, Part backup) {
    const SString file = Printable(change.file);
    SStringList left;
    if (new_version == Part::Others) {
        left.Push(file + ".install is another one than Install put into service" +
                  CopyOf(change.new_version, run));
    }
    if (new_version == Part::Gone) {
        left.Push(file + ".install was removed since" + CopyOf(change.new_version, run));
    }
    if (new_version == Part::Lost) left.Push("No copy was kept of " + file + ".install, as it was delivered");
    if (backup == Part::Others) {
        left.Push(file + ".backup is another one than Install left" + CopyOf(change.older_backup, run));
    }
    if (backup == Part::Lost) left.Push("No copy was kept of " + file + ".backup, as it was before");
    return left;
}

/// A journal beside it would be played back into the new file.
bool MakeNewVersion(const DatabasePrepared& change, const UndoneRun& run) {
    const SString path = NewVersion(change.file);
    for (const char* ending : {"-journal", "-wal", "-shm"}) RemoveFile(path + ending);
    const auto bytes = KeptBytes(change.new_version, run.kept);
    if (bytes && EntryExists(path) && BytesOf(path) == *bytes) return true;
    return bytes && MakeAnew(path, *bytes, change.new_version.access);
}

bool MakeBackup(const DatabasePrepared& change, const UndoneRun& run) {
    const SString path = Backup(change.file);
    if (!change.older_backup.was_there) return RemoveFile(path) && SyncParent(path);
    const auto bytes = KeptBytes(change.older_backup, run.kept);
    return bytes && MakeAnew(path, *bytes, change.older_backup.access);
}

/// What a killed run left half-written is worked off, as by whoever opens it next.
bool IsSettled(const DatabasePrepared& change) {
    if (!IsThatFile(NewVersion(change.file), change.id)) return true;
    return SettleDatabase(NewVersion(SiteDatabase(change.file)));
}

/// Where the new version itself is gone, as somebody, or an Undo that was killed, put another file in its
/// place, its copy is all that is left of it.
Finding OfStillExchanged(const DatabasePrepared& change, const UndoneRun& run) {
    const bool is_there = IsNewVersionThere(change) || EntryExists(NewVersion(change.file));
    const SString copy = is_there ? SString() : CopyOf(change.new_version, run);
    if (copy.IsEmpty()) return {};
    return {Standing::Changed, Printable(NewVersion(change.file)) +
                                   " is not made anew, as what Install put into service is gone" + copy};
}

/// What can go back should be back by now, but could not be taken back. Otherwise it is told with the
/// exchange.
TakenBack NotYet(const DatabasePrepared& change, const UndoneRun& run) {
    if (StandingOfExchange(change, run) != Standing::AsLeft) return {};
    const SString file = Printable(change.file);
    return {false, file + ".install is made anew once " + file + " is put back"};
}

}  // namespace

Finding LookAt(const DatabasePrepared& change, const UndoneRun& run) {
    const bool goes_back = StandingOfExchange(change, run) == Standing::AsLeft;
    if (!goes_back && IsStillExchanged(change, run)) return OfStillExchanged(change, run);
    if (SiteDatabase(change.file).IsEmpty()) return {Standing::Unknown, OfAnotherSite(change.file)};
    const Part part = PartOfNewVersion(change, run);
    const Part backup = goes_back ? PartOfMissingBackup(change, run) : PartOfBackup(change, run);
    const SStringList left = LeftAlone(change, run, part, backup);
    if (part == Part::ToDo) {
        const SString new_version = Printable(NewVersion(change.file));
        return {Standing::AsLeft, "Make " + new_version + " anew, as it was delivered", left};
    }
    if (backup == Part::ToDo || EntryExists(UnfinishedBackup(change))) {
        return {Standing::AsLeft, "Put " + Printable(Backup(change.file)) + " back as it was", left};
    }
    return left.IsEmpty() ? Finding() : Finding{Standing::Changed, left.Join("; ")};
}

TakenBack TakeBack(const DatabasePrepared& change, const UndoneRun& run) {
    if (SiteDatabase(change.file).IsEmpty()) return {};
    if (IsStillExchanged(change, run)) return NotYet(change, run);
    if (!IsSettled(change)) return {false, Printable(NewVersion(change.file)) + " is in use"};
    const Part new_version = PartOfNewVersion(change, run);
    const Part backup = PartOfBackup(change, run);
    TakenBack taken = {true, LeftAlone(change, run, new_version, backup)};
    const auto failed = [&taken](const SString& path) {
        taken.is_whole = false;
        taken.left.Push(Printable(path) + " could not be made anew");
    };
    if (new_version == Part::ToDo && !MakeNewVersion(change, run)) failed(NewVersion(change.file));
    RemoveFile(UnfinishedBackup(change));
    if (backup == Part::ToDo && !MakeBackup(change, run)) failed(Backup(change.file));
    return taken;
}
