// Puts a rewritten host file back, in place, from its backup or from the note of a killed run; then the run's
// backup and notes go.
//
// It is noted first, as by Install: a killed Undo is finished by another, or by the next Install.
#include <csignal>

#include "install/host/probes.h"
#include "install/record/record.h"
#include "install/settings.h"
#include "support/process/process.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "undo/host/rewritten_file.h"
#include "undo/host/unreached.h"
#include "undo/ways.h"

namespace {

using State = RewrittenFile::State;

constexpr char kInetd[] = "inetd";
constexpr char kOtherInetd[] = "inetutils-inetd";  // reads the same file; Install does not signal it

/// Those that run and read the file, by their names.
SStringList ReadersOf(const SString& path) {
    if (path != gstr_InetdConf) return {};
    const SStringList running = RunningProcesses();
    SStringList readers;
    for (const char* inetd : {kInetd, kOtherInetd}) {
        if (!ProcessesNamed(running, inetd).IsEmpty()) readers.Push(inetd);
    }
    return readers;
}

/// A link that led to it when the run began may lead elsewhere by now, or be a file.
SStringList OtherOfThatName(const SString& path) {
    for (const SString& known : {gstr_InetdConf, gstr_ServicesFile}) {
        if (path != known && BaseName(path, "") == BaseName(known, ""))
            return known + " is read instead of " + path + " by now, and is left as it is";
    }
    return {};
}

SStringList ByHand(const SString& path, const SStringList& readers) {
    if (!readers.Contains(kOtherInetd)) return OtherOfThatName(path);
    return kOtherInetd + (" is to read " + path) + " again: pkill -HUP -x " + kOtherInetd;
}

Finding FoundAsLeft(const SString& path, const SString& putting) {
    const SStringList readers = ReadersOf(path);
    return {Standing::AsLeft, putting + (readers.Contains(kInetd) ? ", and hang up inetd" : ""),
            ByHand(path, readers)};
}

Finding Found(const change::HostFileRewritten& change, const RewrittenFile& file) {
    const SString putting =
        "Put " + change.path + " back from " + (file.backup ? change.backup : "the note beside it");
    switch (file.state) {
        case State::AsBefore:
            return {};
        case State::LeftOvers:
            return {Standing::AsLeft, "Remove what was left beside " + change.path + ", which is as before"};
        case State::AsLeft:
            return FoundAsLeft(change.path, putting);
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
bool Announce(const RewrittenFile& file) {
    const auto& rewrite = file.note.rewrite;
    if (rewrite && !file.note.is_written && rewrite->after == file.before) return true;
    const mode_t mode = rewrite ? rewrite->mode : file.original->Mode();
    RemoveDraft(file.Path());
    return WriteNote(file.Path(), {mode, file.after, file.before});
}

/// The file was not touched: a note that was there before is still needed.
bool GiveUp(const RewrittenFile& file) {
    if (file.note.rewrite) {
        RemoveDraft(file.Path());
    } else {
        RemoveNote(file.Path());
    }
    return false;
}

/// Nothing where it is not touched.
std::optional<Written> Overwrite(const RewrittenFile& file) {
    const Original& original = *file.original;
    const WriteAccess access(file.Path(), original);
    const Descriptor opened = access.IsGranted() ? OpenForWriting(file.Path(), original) : Descriptor();
    if (!opened) return std::nullopt;
    return WriteEither(opened, file.before, file.after);
}

bool Write(const RewrittenFile& file) {
    const auto written = Announce(file) ? Overwrite(file) : std::nullopt;
    return written ? written == Written::Text : GiveUp(file);
}

/// The mode that a note tells is the one from before write permission was added.
bool IsPutBack(const RewrittenFile& file) {
    const bool is_written = file.original->bytes == file.before || Write(file);
    return is_written && (!file.note.rewrite || PutModeBack(*file.original, file.note.rewrite->mode));
}

void HangUpInetd(const SString& path, TakenBack* taken) {
    const SStringList readers = ReadersOf(path);
    if (readers.Contains(kInetd) && !KillProgram(kInetd, SIGHUP))
        taken->left.Push("inetd could not be hung up: pkill -HUP -x inetd");
    taken->left.Push(ByHand(path, readers));
}

void RemoveLeftOvers(const change::HostFileRewritten& change, const RewrittenFile& file, TakenBack* taken) {
    if (file.backup) {
        RemoveFile(file.backup->Path());
        SyncParent(file.backup->Path());
    } else if (EntryExists(change.backup)) {
        taken->left.Push(change.backup + " is not as the run left it, and stays");
    }
    RemoveNote(file.Path());
}

/// Somebody may have edited it meanwhile.
TakenBack NotPutBack(const change::HostFileRewritten& change) {
    const RewrittenFile file = FindRewrittenFile(change);
    if (file.state == State::Edited || file.state == State::Gone) return {false, Found(change, file).text};
    return {false, change.path + " could not be put back; its old text is " + change.backup};
}

}  // namespace

Finding LookAt(const change::HostFileRewritten& change, const UndoneRun& /*run*/) {
    const AsRoot root;
    const RewrittenFile file = FindRewrittenFile(change);
    return file.place ? Found(change, file) : Unreached(change.path);
}

TakenBack TakeBack(const change::HostFileRewritten& change, const UndoneRun& /*run*/) {
    const AsRoot root;
    RewrittenFile file = FindRewrittenFile(change);
    if (file.state != State::AsLeft && file.state != State::LeftOvers) return {};
    if (file.state == State::LeftOvers) file.before = file.original->bytes;
    TakenBack taken;
    if (!IsPutBack(file)) return NotPutBack(change);
    if (file.state == State::AsLeft || file.note.rewrite) HangUpInetd(change.path, &taken);
    RemoveLeftOvers(change, file, &taken);
    return taken;
}
