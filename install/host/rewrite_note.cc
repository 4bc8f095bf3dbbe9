#include "install/host/rewrite_note.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include "support/system/file.h"
#include "support/system/regular_file.h"
#include "support/text/sstring_list.h"

namespace {

constexpr mode_t kOthersWrite = 022;  // the group's bits are an access list's mask, too
constexpr mode_t kOwnerOnly = 0600;

SString NoteName(const SString& path) {
    return HiddenBeside(path, ".rewrite");
}

SString WrittenName(const SString& path) {
    return HiddenBeside(path, ".rewritten");
}

SString DraftName(const SString& path) {
    return HiddenBeside(path, ".rewrite.new");
}

bool IsTrusted(const struct stat& status) {
    return S_ISREG(status.st_mode) && status.st_uid == geteuid() && (status.st_mode & kOthersWrite) == 0;
}

SString Format(const Rewrite& rewrite) {
    return SStringList({rewrite.mode, rewrite.before.Length(), rewrite.after.Length()}).Join(" ") + "\n" +
           rewrite.before + rewrite.after;
}

/// Nothing unless the text is exactly what Format gives.
std::optional<Rewrite> Parse(const SString& text) {
    const SStringList numbers = text.M("\\A(\\d{1,4}) (\\d{1,9}) (\\d{1,9})\\n");
    if (numbers.Count() != 3) return std::nullopt;
    const auto before_length = static_cast<size_t>(numbers[1].ToNumber());
    const std::string_view texts = std::string_view(text.Bytes()).substr(numbers.Join(" ").Length() + 1);
    if (texts.size() < before_length) return std::nullopt;
    Rewrite rewrite{static_cast<mode_t>(numbers[0].ToNumber()), SString(texts.substr(0, before_length)),
                    SString(texts.substr(before_length))};
    return Format(rewrite) == text ? std::optional(std::move(rewrite)) : std::nullopt;
}

FoundNote ReadNoteAt(const SString& name) {
    FoundNote unreadable{false, std::nullopt};
    struct stat status {};
    if (lstat(name.CString(), &status) != 0) return errno == ENOENT ? FoundNote() : unreadable;
    if (!IsTrusted(status)) return {};
    const RegularFile file = OpenRegularFile(name, O_RDONLY, Links::NotAtEnd);
    if (!file || !IsTrusted(file.status) || file.status.st_nlink != 1) return unreadable;
    const std::optional<SString> text = file.descriptor.ReadAll();
    return text ? FoundNote{true, Parse(*text)} : unreadable;
}

}  // namespace

bool WriteNote(const SString& path, const Rewrite& rewrite) {
    const SString draft = DraftName(path);
    const Descriptor file = Descriptor::Open(draft, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, kOwnerOnly);
    return file && file.WriteAll(Format(rewrite)) && file.Sync() && Rename(draft, NoteName(path)) &&
           SyncParent(path);
}

bool MarkWritten(const SString& path) {
    return Rename(NoteName(path), WrittenName(path)) && SyncParent(path);
}

void RemoveDraft(const SString& path) {
    RemoveFile(DraftName(path));
}

bool HasDraft(const SString& path) {
    return EntryExists(DraftName(path));
}

void RemoveNote(const SString& path) {
    RemoveDraft(path);
    bool is_removed = false;
    for (const SString& name : {NoteName(path), WrittenName(path)}) is_removed |= RemoveFile(name);
    // Without the sync the note may come back, but the file is whole by now, and the next run sees that.
    if (is_removed) SyncParent(path);
}

FoundNote ReadNote(const SString& path) {
    FoundNote note = ReadNoteAt(NoteName(path));
    if (note.rewrite || !note.is_readable) return note;
    note = ReadNoteAt(WrittenName(path));
    note.is_written = true;
    return note;
}

bool IsCutPiece(const SString& piece, const SString& text) {
    const std::string& found = piece.Bytes();
    const auto is_same_or_lost = [](char byte, char intended) { return byte == intended || byte == '\0'; };
    return piece != text && piece.Length() <= text.Length() &&
           std::equal(found.begin(), found.end(), text.Bytes().begin(), is_same_or_lost);
}
