#include "install/record/record.h"

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>

#include <optional>

#include "install/record/record_file.h"
#include "install/record/text.h"
#include "support/system/clock.h"
#include "support/system/file.h"
#include "support/system/identity.h"
#include "support/system/random.h"

namespace {

constexpr mode_t kMode = 0600;
constexpr size_t kKeyLength = 32;
constexpr size_t kChunk = 1U << 20U;

std::optional<RecordFile> record;
SString key;

void Append(const Change& change, bool is_synced) {
    if (IsRecording()) record->Append(LineOf(UniversalTime(), change), is_synced);
}

/// Not there where any of it failed.
Descriptor NewFile(const SString& folder, const SString& name) {
    if (folder.IsEmpty()) return {};
    auto file = Descriptor::Open(folder + name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, kMode);
    if (file && fchmod(file.Get(), kMode) != 0) return {};
    return file;
}

bool Publish(const Descriptor& file, const SString& folder) {
    return file.Sync() && SyncDirectory(folder) && SyncParent(folder);
}

bool Copy(const Descriptor& from, const Descriptor& to) {
    off_t at = 0;
    ssize_t copied = 1;
    while (copied > 0) copied = sendfile(to.Get(), from.Get(), &at, kChunk);
    return copied == 0;
}

bool KeepKey(const SString& bytes) {
    const AsRoot root;
    const SString folder = record->KeptFolder();
    const Descriptor file = NewFile(folder, "key");
    return file && file.WriteAll(bytes) && Publish(file, folder);
}

bool KeepCopy(const Descriptor& from, const SString& name) {
    const AsRoot root;
    const SString folder = record->KeptFolder();
    const Descriptor file = NewFile(folder, name);
    const bool is_kept = file && Copy(from, file) && Publish(file, folder);
    if (file && !is_kept) RemoveFile(folder + name);  // the run may need the place on the disk
    return is_kept;
}

}  // namespace

void NameRecord(const SString& directory) {
    record.emplace(directory);
    key = "";
}

bool IsRecording() {
    return record && record->IsOn();
}

void RecordChange(const Change& change) {
    Append(change, true);
}

void RecordWithoutSync(const Change& change) {
    Append(change, false);
}

change::KeptFile KeepBesideRecord(const Descriptor& file, const SString& name) {
    if (!IsRecording()) return {};
    const auto access = AccessOf(file);
    if (access && KeepCopy(file, name)) return {true, name, *access};
    StopRecording();
    return {};
}

SString RecordKey() {
    if (!IsRecording()) return "";
    if (!key.IsEmpty()) return key;
    const SString bytes = RandomBytes(kKeyLength);
    if (KeepKey(bytes)) {
        key = bytes;
    } else {
        StopRecording();
    }
    return key;
}

void StopRecording() {
    if (record) record->TurnOff();
}

void EndRecord(int status) {
    if (IsRecording() && record->IsBegun()) RecordChange(change::RunEnded{status});
}
