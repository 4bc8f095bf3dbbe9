#include "support/system/pending_file.h"

#include <fcntl.h>

#include <cerrno>

#include "support/system/environment.h"
#include "support/system/file.h"

namespace {

constexpr mode_t kMode = 0660;
constexpr int kNames = 1000;  // of killed processes that had the same id

SString OtherName(const SString& path, int number) {
    SString name = BaseName(path, "");
    SString directory(path.Bytes().substr(0, path.Length() - name.Length()));
    return directory + "." + name + "." + ProcessIdString() + "." + SString(number);
}

}  // namespace

PendingFile::PendingFile(const SString& path) : path_(path) {
    for (int number = 0; number < kNames; ++number) {
        SString name = OtherName(path, number);
        file_ = Descriptor::Open(name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, kMode);
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

bool PendingFile::Publish() {
    if (!file_ || !whole_ || !file_.Sync() || !file_.Close()) return false;
    if (!Rename(other_name_, path_)) return false;
    other_name_ = "";
    return SyncParent(path_);
}
