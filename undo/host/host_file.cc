// Puts a rewritten host file back, in place, from its backup or from the note of a killed run; then the run's
// backup and notes go.
//
// It is noted first, as by Install: a killed Undo is finished by another, or by the next Install.
#include <csignal>

#include "install/host/in_place.h"
#include "install/host/probes.h"
#include "install/host/rewrite_note.h"
#include "install/record/record.h"
#include "install/settings.h"
#include "support/process/process.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "support/system/trusted_path.h"
#include "undo/host/unreached.h"
#include "undo/ways.h"

namespace {

enum class State { AsBefore, LeftOvers, AsLeft, Edited, Gone, NoText, NotOurNote, Unknown };

/// The file, and what the run and a killed Undo have left beside it.
struct Sight {
    State state = State::Unknown;
    std::optional<TrustedPlace> place;
    std::optional<TrustedPlace> backup;  // nothing where it is not the run's
    std::optional<Original> file;
    FoundNote note;
    SString before;  // the texts, as far as they are at hand
    SString after;

    SString Path() const { return place->Path(); }
};

/// Not by a link at the end: the recorded path had been resolved.
std::optional<Original> OpenAt(const TrustedPlace& place) {
    return OpenOriginal(place.Path(), Links::NotAtEnd);
}

/// Of the run's rewrite, or of a killed Undo of it.
bool IsOurs(const Rewrite& rewrite, const change::HostFileRewritten& change) {
    const SString one = Checksum(rewrite.before);
    const SString other = Checksum(rewrite.after);
    return (one == change.before && other == change.after) || (one == change.after && other == change.before);
}

void TakeTextsFromNote(const change::HostFileRewritten& change, Sight* sight) {
    const bool is_undos = Checksum(sight->note.rewrite->after) == change.before;
    sight->before = is_undos ? sight->note.rewrite->after : sight->note.rewrite->before;
    sight->after = is_undos ? sight->note.rewrite->before : sight->note.rewrite->after;
}

/// A run that was killed early leaves a piece of the text.
void FindBackup(const change::HostFileRewritten& change, Sight* sight) {
    std::optional<TrustedPlace> place = FindTrusted(change.backup);
    const std::optional<Original> backup = place ? OpenAt(*place) : std::nullopt;
    if (!backup) return;
    const bool is_whole = Checksum(backup->bytes) == change.before;
    const bool is_piece =
        Checksum(sight->file->bytes) == change.before && IsCutPiece(backup->bytes, sight->file->bytes);
    if (is_whole || is_piece) sight->backup = std::move(place);
    if (is_whole) sight->before = backup->bytes;
}

State StateOf(const change::HostFileRewritten& change, const Sight& sight) {
    const SString& bytes = sight.file->bytes;
    const SString sum = Checksum(bytes);
    const bool has_note = sight.note.rewrite.has_value();
    if (sum == change.before) {
        return has_note || sight.backup || HasDraft(sight.Path()) ? State::LeftOvers : State::AsBefore;
    }
    const bool is_cut = has_note && (IsCutPiece(bytes, sight.before) || IsCutPiece(bytes, sight.after));
    if (sum != change.after && !is_cut) return State::Edited;
    return has_note || sight.backup ? State::AsLeft : State::NoText;
}

State LookBeside(const change::HostFileRewritten& change, Sight* sight) {
    sight->file = OpenAt(*sight->place);
    if (!sight->file) return State::Gone;
    sight->note = ReadNote(sight->Path());
    if (!sight->note.is_readable) return State::Unknown;
    if (sight->note.rewrite && !IsOurs(*sight->note.rewrite, change)) return State::NotOurNote;
    FindBackup(change, sight);
    sight->after = sight->file->bytes;
    if (sight->note.rewrite) TakeTextsFromNote(change, sight);
    return StateOf(change, *sight);
}

Sight Look(const change::HostFileRewritten& change) {
    Sight sight;
    sight.place = FindTrusted(change.path);
    if (sight.place) sight.state = LookBeside(change, &sight);
    return sight;
}

bool IsInetdConf(const SString& path) {
    return path == gstr_InetdConf;
}

Finding Found(const change::HostFileRewritten& change, const Sight& sight) {
    const SString putting =
        "Put " + change.path + " back from " + (sight.backup ? change.backup : "the note beside it");
    switch (sight.state) {
        case State::AsBefore:
            return {};
        case State::LeftOvers:
            return {Standing::AsLeft, "Remove what was left beside " + change.path + ", which is as before"};
        case State::AsLeft:
            return {Standing::AsLeft, putting + (IsInetdConf(change.path) ? ", and hang up inetd" : "")};
        case State::Edited:
            return {Standing::Changed, change.path + " was edited since; its old text is " + change.backup};
        case State::Gone:
            return {Standing::Changed,
                    change.path + " is no file any more; its old text is " + change.backup};
        case State::NoText:
            return {Standing::Changed,
                    change.path + " stays, as its backup " + change.backup + " is gone or was changed"};
        case State::NotOurNote:
            return {Standing::Unknown,
                    "Another rewrite of " + change.path + " was cut short: take that run back first"};
        case State::Unknown:
            break;
    }
    return {Standing::Unknown, change.path + " or the note beside it cannot be read"};
}

/// From here on the file may be a piece of either text. A note that says that the file has its new text is no
/// longer true then.
bool Announce(const Sight& sight) {
    const auto& rewrite = sight.note.rewrite;
    if (rewrite && !sight.note.is_written && rewrite->after == sight.before) return true;
    const mode_t mode = rewrite ? rewrite->mode : sight.file->Mode();
    RemoveDraft(sight.Path());
    return WriteNote(sight.Path(), {mode, sight.after, sight.before});
}

/// The file was not touched: a note that was there before is still needed.
bool GiveUp(const Sight& sight) {
    if (sight.note.rewrite) {
        RemoveDraft(sight.Path());
    } else {
        RemoveNote(sight.Path());
    }
    return false;
}

/// Nothing where it is not touched.
std::optional<Written> Overwrite(const Sight& sight) {
    const WriteAccess access(sight.Path(), *sight.file);
    const Descriptor file = access.IsGranted() ? OpenForWriting(sight.Path(), *sight.file) : Descriptor();
    if (!file) return std::nullopt;
    return WriteEither(file, sight.before, sight.after);
}

bool Write(const Sight& sight) {
    const auto written = Announce(sight) ? Overwrite(sight) : std::nullopt;
    return written ? written == Written::Text : GiveUp(sight);
}

/// The mode that a note tells is the one from before write permission was added.
bool IsPutBack(const Sight& sight) {
    const bool is_written = sight.file->bytes == sight.before || Write(sight);
    return is_written && (!sight.note.rewrite || PutModeBack(*sight.file, sight.note.rewrite->mode));
}

void HangUpInetd(const SString& path, TakenBack* taken) {
    if (!IsInetdConf(path) || ProcessesNamed(RunningProcesses(), "inetd").IsEmpty()) return;
    if (!KillProgram("inetd", SIGHUP)) taken->left.Push("inetd could not be hung up: pkill -HUP -x inetd");
}

void RemoveLeftOvers(const change::HostFileRewritten& change, const Sight& sight, TakenBack* taken) {
    if (sight.backup) {
        RemoveFile(sight.backup->Path());
        SyncParent(sight.backup->Path());
    } else if (EntryExists(change.backup)) {
        taken->left.Push(change.backup + " is not as the run left it, and stays");
    }
    RemoveNote(sight.Path());
}

/// Somebody may have edited it meanwhile.
TakenBack NotPutBack(const change::HostFileRewritten& change) {
    const Sight sight = Look(change);
    if (sight.state == State::Edited || sight.state == State::Gone) return {false, Found(change, sight).text};
    return {false, change.path + " could not be put back; its old text is " + change.backup};
}

}  // namespace

Finding LookAt(const change::HostFileRewritten& change, const UndoneRun& /*run*/) {
    const AsRoot root;
    const Sight sight = Look(change);
    return sight.place ? Found(change, sight) : Unreached(change.path);
}

TakenBack TakeBack(const change::HostFileRewritten& change, const UndoneRun& /*run*/) {
    const AsRoot root;
    Sight sight = Look(change);
    if (sight.state != State::AsLeft && sight.state != State::LeftOvers) return {};
    if (sight.state == State::LeftOvers) sight.before = sight.file->bytes;
    TakenBack taken;
    if (!IsPutBack(sight)) return NotPutBack(change);
    if (sight.state == State::AsLeft || sight.note.rewrite) HangUpInetd(change.path, &taken);
    RemoveLeftOvers(change, sight, &taken);
    return taken;
}
