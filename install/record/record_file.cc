#include "install/record/record_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "install/record/text.h"
#include "support/system/clock.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "support/system/identity.h"

namespace {

constexpr mode_t kMode = 0600;
constexpr mode_t kFolderMode = 0700;

/// "20261122T170405Z-4711"
SString Name() {
    return UniversalTime().S("[-:]", "", "g") + "-" + ProcessIdString();
}

/// Nobody but the real user, root, may write there or see what is in it.
bool IsTrusted(const SString& directory) {
    const AsRoot root;
    const auto opened = Descriptor::Open(directory, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    const auto status = opened ? opened.Stat() : std::nullopt;
    return status && status->st_uid == getuid() && (status->st_mode & 077U) == 0;
}

/// In one call, so that a kill leaves all of it or nothing.
bool WriteAtOnce(const Descriptor& file, const SString& bytes) {
    return write(file.Get(), bytes.CString(), bytes.Length()) == static_cast<ssize_t>(bytes.Length());
}

/// A process that was killed in its turn may have left a part of a line; most often it has left none of it.
bool EndsWithLine(const SString& path) {
    const AsRoot root;
    const auto file = Descriptor::Open(path, O_RDONLY | O_NOFOLLOW);
    const auto status = file ? file.Stat() : std::nullopt;
    char last = 0;
    return status && status->st_size > 0 && pread(file.Get(), &last, 1, status->st_size - 1) == 1 &&
           last == '\n';
}

}  // namespace

RecordFile::Turn::Turn(State* state, const SString& path) : state_(state) {
    if (pthread_mutex_lock(&state->turn) != EOWNERDEAD) return;
    if (!EndsWithLine(path)) state->is_off = true;
    pthread_mutex_consistent(&state->turn);
}

RecordFile::RecordFile(const SString& directory)
    : is_there_(state_.IsThere() && !directory.IsEmpty()),
      directory_(directory),
      path_(directory + "/" + Name()) {
    if (!is_there_) return;
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    pthread_mutex_init(&state_->turn, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

bool RecordFile::IsOn() {
    if (!is_there_ || state_->is_off) return false;
    if (!is_directory_trusted_) is_directory_trusted_ = IsTrusted(directory_);
    if (!is_directory_trusted_) TurnOff();
    return is_directory_trusted_;
}

void RecordFile::TurnOff() {
    if (is_there_) state_->is_off = true;
}

void RecordFile::Append(const SString& line, bool is_synced) {
    if (!IsOn()) return;
    const Turn turn(&*state_, path_);
    if (state_->is_off) return;
    const bool is_written = state_->is_begun ? Write(line, is_synced) : Begin(line);
    if (!is_written) TurnOff();
}

/// A kill before the first line leaves an empty file, which tells of no change, as there was none.
bool RecordFile::Begin(const SString& line) {
    const AsRoot root;
    file_ = Descriptor::Open(path_, O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_NOFOLLOW, kMode);
    opener_ = getpid();
    // The mask may have taken rights.
    const bool is_whole =
        file_ && fchmod(file_.Get(), kMode) == 0 && WriteAtOnce(file_, FormatLine() + line) && file_.Sync();
    if (file_ && !is_whole) RemoveFile(path_);
    state_->is_begun = is_whole;
    return is_whole && SyncParent(path_);
}

bool RecordFile::Write(const SString& line, bool is_synced) {
    return Open() && WriteAtOnce(file_, line) && (!is_synced || fdatasync(file_.Get()) == 0);
}

bool RecordFile::Open() {
    if (opener_ == getpid()) return true;
    file_.Release();  // the number may be another file's by now
    const AsRoot root;
    file_ = Descriptor::Open(path_, O_WRONLY | O_APPEND | O_NOFOLLOW);
    if (file_) opener_ = getpid();
    return static_cast<bool>(file_);
}

SString RecordFile::KeptFolder() {
    if (!IsOn()) return "";
    const AsRoot root;
    const SString folder = path_ + ".kept/";
    const bool is_made = MakeDir(folder, kFolderMode) && chmod(folder.CString(), kFolderMode) == 0;
    return is_made ? folder : errno == EEXIST ? folder : SString();
}
