#include "undo/records.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "support/system/file.h"
#include "support/system/trusted_path.h"

namespace {

constexpr mode_t kOthers = 077;
constexpr mode_t kOthersWrite = 022;
constexpr mode_t kOwnerOnly = 0600;
constexpr size_t kLongestKey = 4096;

const SString kRunName = "\\A(\\d{4})(\\d\\d)(\\d\\d)T(\\d\\d)(\\d\\d)(\\d\\d)Z-\\d+\\z";

SString DirectoryFault(const Descriptor& directory, const SString& path) {
    if (!directory) return errno == ENOENT ? "" : path + " cannot be opened: " + strerror(errno);
    const auto status = directory.Stat();
    if (!status) return path + " cannot be looked at";
    if (status->st_uid != 0) return path + " is not root's: what it says is not trusted";
    if ((status->st_mode & kOthers) != 0) return path + " is open to others: chmod 700 " + path;
    return "";
}

SString FileFault(const Descriptor& file) {
    if (!file) return strerror(errno);
    const auto status = file.Stat();
    if (!status || !S_ISREG(status->st_mode)) return "it is no regular file";
    if (status->st_uid != 0) return "it is not root's";
    if ((status->st_mode & kOthersWrite) != 0) return "others can write it";
    if (status->st_nlink != 1) return "it has another name";
    return "";
}

/// Within a second the process ids tell.
bool IsEarlier(const SString& run, const SString& other) {
    const SString time = TimeOf(run);
    const SString other_time = TimeOf(other);
    const auto process = [](const SString& name) { return name.S("\\A.*-", "").ToNumber(); };
    return time == other_time ? process(run) < process(other) : time < other_time;
}

SString LineFault(size_t number) {
    return "line " + SString(number) + " cannot be understood";
}

void TakeLine(TimedChange timed, RecordedRun* run) {
    if (const auto* end = std::get_if<change::RunEnded>(&timed.change)) {
        run->status = end->status;
    } else {
        run->changes.push_back(std::move(timed));
    }
}

/// Of an empty record, the run was killed when it was about to make its first change.
void TakeLines(SStringList lines, RecordedRun* run) {
    if (lines.IsEmpty()) return;
    if (lines.Shift() != FormatLine()) {
        run->fault = "its first line is not the one of this version's records";
        return;
    }
    run->changes.reserve(static_cast<size_t>(lines.Count()));
    size_t number = 1;
    for (const SString& line : lines) {
        ++number;
        std::optional<TimedChange> timed = ChangeFrom(line);
        run->is_cut = !line.EndsWith("\n");
        if (run->is_cut) return;
        if (!timed) {
            run->fault = LineFault(number);
            return;
        }
        TakeLine(std::move(*timed), run);
    }
}

}  // namespace

Records::Records(const SString& directory) : directory_(directory), opened_(OpenTrustedDirectory(directory)) {
    fault_ = DirectoryFault(opened_, directory);
}

SStringList Records::Names() const {
    SStringList names;
    if (!fault_.IsEmpty() || !opened_) return names;
    for (const SString& path : ReadDir("/proc/self/fd/" + SString(opened_.Get()))) {
        const SString name = BaseName(path, "");
        if (name.Matches(kRunName)) names.Push(name);
    }
    std::sort(names.begin(), names.end(), IsEarlier);
    return names;
}

SStringList Records::After(const SString& run) const {
    SStringList later;
    for (const SString& name : Names()) {
        if (IsEarlier(run, name)) later.Push(name);
    }
    return later;
}

RecordedRun Records::Read(const SString& name) const {
    RecordedRun run;
    run.name = name;
    const Descriptor file = Open(name, O_RDONLY, &run.fault);
    if (!run.fault.IsEmpty()) return run;
    const std::optional<SString> text = file.ReadAll();
    if (text) {
        TakeLines(Lines(*text), &run);
    } else {
        run.fault = strerror(errno);
    }
    return run;
}

SString Records::KeyOf(const SString& name) const {
    const Descriptor kept =
        Descriptor::OpenAt(opened_.Get(), name + ".kept", O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!kept || !DirectoryFault(kept, name).IsEmpty()) return "";
    const Descriptor key = Descriptor::OpenAt(kept.Get(), "key", O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    return FileFault(key).IsEmpty() ? key.ReadAll(kLongestKey).value_or("") : "";
}

Descriptor Records::Open(const SString& file, int flags, SString* fault) const {
    Descriptor opened = Descriptor::OpenAt(opened_.Get(), file, flags | O_NOFOLLOW | O_NONBLOCK, kOwnerOnly);
    *fault = FileFault(opened);
    return fault->IsEmpty() ? std::move(opened) : Descriptor();
}

bool Records::Has(const SString& file) const {
    return faccessat(opened_.Get(), file.CString(), F_OK, AT_SYMLINK_NOFOLLOW) == 0 || errno != ENOENT;
}

SString Records::WriteFault() const {
    return faccessat(opened_.Get(), ".", W_OK, AT_EACCESS) == 0 ? "" : strerror(errno);
}

SString TimeOf(const SString& run) {
    return run.S(kRunName, "$1-$2-$3T$4:$5:$6Z");
}

SString PlainTimeOf(const SString& run) {
    return run.S(kRunName, "$1-$2-$3 $4:$5:$6 UTC");
}
