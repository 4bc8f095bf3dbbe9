// Reads the kernel's list of mounts, and walks a path down to where it leaves the local disks.
#include "support/system/mounts.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <string>

#include "support/system/file.h"
#include "support/system/identity.h"

namespace {

constexpr int kMostLinks = 40;  // as the kernel follows

/// "\040" stands for a blank.
SString WithoutEscapes(const SString& field) {
    std::string bytes;
    const std::string& text = field.Bytes();
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size()) {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 3), nullptr, 8));
            i += 3;
        } else {
            bytes += text[i];
        }
    }
    return SString(std::move(bytes));
}

bool IsBelow(const SString& path, const SString& point) {
    return point == "/" || path == point || path.StartsWith((point + "/").Bytes());
}

/// Of the root directory, the empty path.
SString Joined(const SString& directory, const SString& name) {
    if (name.IsEmpty() || name == ".") return directory;
    return name == ".." ? directory.S("/[^/]*\\z", "") : directory + "/" + name;
}

SString LinkTarget(const SString& path) {
    std::array<char, PATH_MAX> target{};
    const ssize_t length = readlink(path.CString(), target.data(), target.size());
    return length <= 0 ? SString() : SString(std::string(target.data(), static_cast<size_t>(length)));
}

}  // namespace

// "36 35 98:0 /root /point options [tags] - type source options": a disk has a major number, of FUSE's the
// program may be anybody's.
Mounts::Mounts(const SStringList& lines) {
    for (const SString& line : lines) {
        const SStringList fields = line.Split(' ');
        const bool has_disk = !fields.Get(2).StartsWith("0:") && !line.Matches(" - fuse");
        const SString point = WithoutEscapes(fields.Get(4));
        if (point.StartsWith("/")) mounts_.push_back({point, has_disk || point == "/"});
    }
}

Mounts Mounts::Now() {
    return Mounts(Lines(MapFileRead("/proc/self/mountinfo")));
}

const Mounts::Mount* Mounts::At(const SString& point) const {
    // The last one covers those before.
    const auto mount = std::find_if(mounts_.rbegin(), mounts_.rend(),
                                    [&](const Mount& candidate) { return candidate.point == point; });
    return mount == mounts_.rend() ? nullptr : &*mount;
}

SString Mounts::PointOf(const SString& path) const {
    const SString real = WithoutLinks(path);
    SString point = "/";
    for (const Mount& mount : mounts_) {
        if (mount.point.Length() > point.Length() && IsBelow(real, mount.point)) point = mount.point;
    }
    return point;
}

/// The path with its links followed, down to the first mount point that is not local.
SString Mounts::WithoutLinks(const SString& path) const {
    const AsRoot root;
    SString done;
    SStringList rest = path.SplitExact("/");
    for (int links = 0; !rest.IsEmpty() && links <= kMostLinks;) {
        const SString next = Joined(done, rest.Shift());
        const Mount* mount = At(next);
        if (mount != nullptr && !mount->is_local) return next + "/" + rest.Join("/");
        const SString target = LinkTarget(next);
        if (target.IsEmpty()) {
            done = next;
        } else {
            ++links;
            if (target.StartsWith("/")) done = "";
            rest.Insert(target.SplitExact("/"), 0);
        }
    }
    return done + "/" + rest.Join("/");
}
