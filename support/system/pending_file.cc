#include "support/system/pending_file.h"

#include <fcntl.h>

#include <cerrno>
#include <limits>

#include "support/system/environment.h"
#include "support/system/file.h"
#include "support/system/random.h"
#include "support/system/regular_file.h"

namespace {

constexpr int kTries = 10;

/// Unguessable: in a directory that others can write, they could take all names beforehand.
SString OtherName(const SString& path) {
    const SString number(RandomInt(std::numeric_limits<int>::max()));
    return HiddenBeside(path, "." + ProcessIdString() + "." + number);
}

}  // namespace

std::optional<Pending> PendingFrom(const SString& entry) {
    const SString other_name = "\\A(|[\\s\\S]*\\/)\\.([^\\/]+)\\.(\\d+)\\.\\d+\\z";
    if (!entry.Matches(other_name)) return std::nullopt;
    return Pending{entry.S(other_name, "$1$2"), entry.S(other_name, "$3").ToNumber()};
}

PendingFile::PendingFile(const SString& path, mode_t mode) : path_(path) {
    for (int i = 0; i < kTries; ++i) {
        SString name = OtherName(path);
        file_ = Descriptor::Open(name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
        if (file_) other_name_ = name;
        if (file_ || errno != EEXIST) return;
    }
}

PendingFile::~PendingFile() {
    if (!other_name_.IsEmpty()) RemoveFile(other_name_);
}

bool PendingFile::Write(const SString& bytes) {
    whole_ = whole_ && file_ && file_.WriteAll(bytes);
    return whole_;
}

bool PendingFile::Replace(const struct stat& replaced) {
    if (!file_ || !whole_ || !file_.Sync() || !ExchangeNames(other_name_, path_)) return false;
    struct stat facts {};
    const bool is_meant = lstat(other_name_.CString(), &facts) == 0 && IsSameFile(facts, replaced);
    if (is_meant && facts.st_size == replaced.st_size) return true;
    ExchangeNames(other_name_, path_);
    return false;
}

bool PendingFile::Publish() {
    if (!file_ || !whole_ || !file_.Sync() || !file_.Close()) return false;
    if (!Rename(other_name_, path_)) return false;
    other_name_ = "";
    return SyncParent(path_);
}
