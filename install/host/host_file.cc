#include "install/host/host_file.h"

#include <fcntl.h>
#include <unistd.h>

#include "install/critical_section.h"
#include "install/host/in_place.h"
#include "install/host/rewrite_note.h"
#include "install/record/record.h"
#include "support/system/file.h"
#include "support/system/identity.h"

namespace {

/// The copy of the old contents, removed at the end of the scope unless kept.
class Backup {
  public:
    explicit Backup(const SString& name)
        // O_EXCL: somebody may have taken the name since. 0600: closed to others until it has its owner.
        : name_(name), file_(Descriptor::Open(name_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600)) {}
    ~Backup() {
        if (file_ && !kept_) RemoveFile(name_);
    }
    Backup(const Backup&) = delete;
    Backup& operator=(const Backup&) = delete;

    /// True when the copy and its name are on the disk.
    bool Fill(const Original& original) const {
        return file_ && fchown(file_.Get(), original.file.status.st_uid, original.file.status.st_gid) == 0 &&
               fchmod(file_.Get(), original.Mode()) == 0 && file_.WriteAll(original.bytes) && file_.Sync() &&
               SyncParent(name_);
    }
    void Keep() { kept_ = true; }

  private:
    SString name_;
    Descriptor file_;
    bool kept_ = false;
};

/// The note, there for a scope unless it is left to the next run.
class Note {
  public:
    Note(const SString& path, const Rewrite& rewrite) : path_(path), is_written_(WriteNote(path, rewrite)) {}
    ~Note() {
        if (!left_) RemoveNote(path_);
    }
    Note(const Note&) = delete;
    Note& operator=(const Note&) = delete;
    bool IsWritten() const { return is_written_; }
    void Leave() { left_ = true; }

  private:
    SString path_;
    bool is_written_;
    bool left_ = false;
};

/// What the file should hold; nothing where somebody has edited it since.
std::optional<SString> IntendedText(const Rewrite& rewrite, const SString& bytes) {
    for (const SString& text : {rewrite.after, rewrite.before}) {
        if (bytes == text || IsCutPiece(bytes, text)) return text;
    }
    return std::nullopt;
}

Written Complete(const SString& path, const Original& found, const SString& text, const SString& otherwise) {
    if (found.bytes == text) {
        // The kill may have come between the write and the sync.
        return found.file.descriptor.Sync() ? Written::Text : Written::Neither;
    }
    const WriteAccess access(path, found);
    if (!access.IsGranted()) return Written::Neither;
    const Descriptor file = OpenForWriting(path, found);
    return file ? WriteEither(file, text, otherwise) : Written::Neither;
}

/// The file has its new text; without its old mode, the note stays as it is.
void Conclude(const SString& path, bool is_done, const Announcement& announce, const SString& before) {
    if (is_done) MarkWritten(path);
    announce(before);
}

/// False if the file is still cut.
bool Finish(const SString& path, const Original& found, const Rewrite& rewrite,
            const Announcement& announce) {
    const std::optional<SString> text = IntendedText(rewrite, found.bytes);
    const Written written = text ? Complete(path, found, *text, rewrite.before) : Written::Text;
    if (written == Written::Neither) return false;
    const bool is_done = !text || PutModeBack(found, rewrite.mode);
    const bool is_old = written == Written::Otherwise || text == rewrite.before;
    if (!is_old) Conclude(path, is_done, announce, rewrite.before);
    return is_done;
}

void Record(const SString& path, const SString& backup, const Original& original, const SString& changed) {
    if (!IsRecording()) return;
    RecordChange(change::HostFileRewritten{
        path, backup, {original.Mode()}, Checksum(original.bytes), Checksum(changed)});
}

bool FinishNoted(const SString& path, const FoundNote& note, const Announcement& announce) {
    if (note.is_written) {
        announce(note.rewrite->before);
        return true;
    }
    const std::optional<Original> found = OpenOriginal(path);
    return found && Finish(path, *found, *note.rewrite, announce);
}

}  // namespace

bool FinishRewrite(const SString& path, const Announcement& announce) {
    const AsRoot root;
    RemoveDraft(path);
    const FoundNote note = ReadNote(path);
    if (!note.rewrite) return note.is_readable;
    const CriticalSection section;
    const bool is_finished = FinishNoted(path, note, announce);
    if (is_finished) RemoveNote(path);
    return is_finished;
}

std::optional<SStringList> ReadHostFile(const SString& path) {
    const AsRoot root;
    const std::optional<Original> original = OpenOriginal(path);
    if (!original) return std::nullopt;
    return Lines(original->bytes);
}

bool RewriteHostFile(const SString& path, const LineEdit& edit, const Announcement& announce) {
    const AsRoot root;
    if (!FinishRewrite(path, announce)) return false;
    const std::optional<Original> original = OpenOriginal(path);
    if (!original) return false;
    const SString changed = edit(Lines(original->bytes)).Join();
    // The file itself must be whole on the disk before its newest backup is begun.
    if (!original->file.descriptor.Sync()) return false;
    const SString backup_name = FreeName(path + ".bak");
    Record(path, backup_name, *original, changed);
    Backup backup(backup_name);
    if (!backup.Fill(*original)) return false;
    Note note(path, {original->Mode(), original->bytes, changed});
    if (!note.IsWritten()) return false;
    WriteAccess access(path, *original);
    if (!access.IsGranted()) return false;
    const Descriptor file = OpenForWriting(path, *original);
    if (!file) return false;
    backup.Keep();
    const Written written = WriteEither(file, changed, original->bytes);
    const bool is_done = written != Written::Neither && access.GiveBack();
    if (!is_done) note.Leave();
    if (written == Written::Text) Conclude(path, is_done, announce, original->bytes);
    return written == Written::Text;
}
