// The new version of a module's database, into which the site's settings were copied: it is made anew as it
// was delivered, and so is the older backup that the exchange replaced. The new version comes first, as
// exchanged_database.cc tells by it that there was an exchange.
//
// What is there instead is replaced only if it is this very file (its inode), or a second name or copy of the
// database in use, which a killed exchange leaves.
#include <sys/stat.h>

#include "support/system/descriptor.h"
#include "support/system/file.h"
#include "support/text/printable.h"
#include "undo/mail_system/changes_of.h"
#include "undo/mail_system/kept_files.h"
#include "undo/ways.h"

namespace {

using change::DatabasePrepared;

enum class Part { AsBefore, ToDo, Others, Lost };

bool IsRecorded(const SString& path, const DatabasePrepared& change) {
    struct stat status {};
    return lstat(path.CString(), &status) == 0 && S_ISREG(status.st_mode) && status.st_dev == change.device &&
           status.st_ino == change.inode;
}

SString NewVersion(const DatabasePrepared& change) {
    return change.file + ".install";
}

SString Backup(const DatabasePrepared& change) {
    return change.file + ".backup";
}

SString UnfinishedBackup(const DatabasePrepared& change) {
    return change.file + ".backup.new";
}

Part NewVersionOf(const DatabasePrepared& change, const UndoneRun& run) {
    const SString path = NewVersion(change);
    const auto kept = KeptBytes(change.new_version, run);
    const bool is_there = EntryExists(path);
    if (is_there && kept && BytesOf(path) == *kept) {
        return EntryExists(path + "-journal") ? Part::ToDo : Part::AsBefore;
    }
    if (is_there && !IsRecorded(path, change)) return Part::Others;
    return kept ? Part::ToDo : Part::Lost;
}

bool IsCopyInUse(const DatabasePrepared& change) {
    const auto bytes = BytesOf(Backup(change));
    return bytes && bytes == BytesOf(change.file);
}

Part BackupOf(const DatabasePrepared& change, const UndoneRun& run) {
    const auto kept = KeptBytes(change.older_backup, run);
    const bool was_there = !change.older_backup.kept.IsEmpty();
    if (!EntryExists(Backup(change))) {
        if (!was_there) return Part::AsBefore;
        return kept ? Part::ToDo : Part::Lost;
    }
    if (kept && BytesOf(Backup(change)) == *kept) return Part::AsBefore;
    if (!IsCopyInUse(change)) return Part::Others;
    return was_there && !kept ? Part::Lost : Part::ToDo;
}

/// Of the exchange that followed; AsBefore if none did.
Standing StandingOfExchange(const DatabasePrepared& change, const UndoneRun& run) {
    Standing standing = Standing::AsBefore;
    EachOf<change::DatabaseExchanged>(run, [&](const auto& exchange) {
        if (exchange.file == change.file) standing = LookAt(exchange, run).standing;
    });
    return standing;
}

/// The copy is all that is left of what was there.
SString CopyOf(const change::KeptFile& kept, const UndoneRun& run) {
    return KeptBytes(kept, run) ? "; the one from before is " + Printable(run.kept + kept.kept) : SString();
}

SStringList LeftAlone(const DatabasePrepared& change, const UndoneRun& run, Part new_version, Part backup) {
    const SString file = Printable(change.file);
    SStringList left;
    if (new_version == Part::Others) {
        left.Push(file + ".install is another one than Install put into service" +
                  CopyOf(change.new_version, run));
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
    const SString path = NewVersion(change);
    for (const char* ending : {"-journal", "-wal", "-shm"}) RemoveFile(path + ending);
    const auto bytes = KeptBytes(change.new_version, run);
    if (bytes && EntryExists(path) && BytesOf(path) == *bytes) return true;
    return bytes && MakeAnew(path, *bytes, change.new_version.access);
}

bool MakeBackup(const DatabasePrepared& change, const UndoneRun& run) {
    if (change.older_backup.kept.IsEmpty()) return RemoveFile(Backup(change)) && SyncParent(Backup(change));
    const auto bytes = KeptBytes(change.older_backup, run);
    return bytes && MakeAnew(Backup(change), *bytes, change.older_backup.access);
}

}  // namespace

Finding LookAt(const DatabasePrepared& change, const UndoneRun& run) {
    const SString new_version = Printable(NewVersion(change));
    const Finding to_do = {Standing::AsLeft, "Make " + new_version + " anew, as it was delivered"};
    const Standing exchange = StandingOfExchange(change, run);
    if (exchange == Standing::AsLeft) return to_do;
    if (exchange != Standing::AsBefore) return {};  // told there: the new version stays in use
    const Part part = NewVersionOf(change, run);
    const Part backup = BackupOf(change, run);
    if (part == Part::ToDo) return to_do;
    if (backup == Part::ToDo || EntryExists(UnfinishedBackup(change))) {
        return {Standing::AsLeft, "Put " + Printable(Backup(change)) + " back as it was"};
    }
    const SStringList left = LeftAlone(change, run, part, backup);
    return left.IsEmpty() ? Finding() : Finding{Standing::Changed, left.Join("; ")};
}

TakenBack TakeBack(const DatabasePrepared& change, const UndoneRun& run) {
    if (StandingOfExchange(change, run) != Standing::AsBefore) return {};
    const Part new_version = NewVersionOf(change, run);
    const Part backup = BackupOf(change, run);
    TakenBack taken = {true, LeftAlone(change, run, new_version, backup)};
    const auto failed = [&taken](const SString& path) {
        taken.is_whole = false;
        taken.left.Push(Printable(path) + " could not be made anew");
    };
    if (new_version == Part::ToDo && !MakeNewVersion(change, run)) failed(NewVersion(change));
    RemoveFile(UnfinishedBackup(change));
    if (backup == Part::ToDo && !MakeBackup(change, run)) failed(Backup(change));
    return taken;
}
