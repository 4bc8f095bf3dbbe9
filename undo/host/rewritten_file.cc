#include "undo/host/rewritten_file.h"

#include "install/record/checksum.h"

namespace {

using State = RewrittenFile::State;

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

void TakeTextsFromNote(const change::HostFileRewritten& change, RewrittenFile* file) {
    const bool is_undos = Checksum(file->note.rewrite->after) == change.before;
    file->before = is_undos ? file->note.rewrite->after : file->note.rewrite->before;
    file->after = is_undos ? file->note.rewrite->before : file->note.rewrite->after;
}

/// A run that was killed early leaves a piece of the text.
void FindBackup(const change::HostFileRewritten& change, RewrittenFile* file) {
    std::optional<TrustedPlace> place = FindTrusted(change.backup);
    const std::optional<Original> backup = place ? OpenAt(*place) : std::nullopt;
    if (!backup) return;
    const bool is_whole = Checksum(backup->bytes) == change.before;
    const bool is_piece =
        Checksum(file->original->bytes) == change.before && IsCutPiece(backup->bytes, file->original->bytes);
    if (is_whole || is_piece) file->backup = std::move(place);
    if (is_whole) file->before = backup->bytes;
}

State StateOf(const change::HostFileRewritten& change, const RewrittenFile& file) {
    const SString& bytes = file.original->bytes;
    const SString sum = Checksum(bytes);
    const bool has_note = file.note.rewrite.has_value();
    if (sum == change.before) {
        return has_note || file.backup || HasDraft(file.Path()) ? State::LeftOvers : State::AsBefore;
    }
    const bool is_cut = has_note && (IsCutPiece(bytes, file.before) || IsCutPiece(bytes, file.after));
    if (sum != change.after && !is_cut) return State::Edited;
    return has_note || file.backup ? State::AsLeft : State::NoText;
}

State LookBeside(const change::HostFileRewritten& change, RewrittenFile* file) {
    file->original = OpenAt(*file->place);
    if (!file->original) return State::Gone;
    file->note = ReadNote(file->Path());
    if (!file->note.is_readable) return State::Unknown;
    if (file->note.rewrite && !IsOurs(*file->note.rewrite, change)) return State::NotOurNote;
    FindBackup(change, file);
    file->after = file->original->bytes;
    if (file->note.rewrite) TakeTextsFromNote(change, file);
    return StateOf(change, *file);
}

}  // namespace

RewrittenFile FindRewrittenFile(const change::HostFileRewritten& change) {
    RewrittenFile file;
    file.place = FindTrusted(change.path);
    if (file.place) file.state = LookBeside(change, &file);
    return file;
}
