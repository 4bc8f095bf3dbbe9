// Reads and writes in a home, as its user.
#include "install/visits/home_visit.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "support/system/regular_file.h"

namespace {

constexpr size_t kMostBytes = size_t{1} << 20;

/// A home that is open: everything in it is looked at from there.
class Home {
  public:
    Home(const SString& path, VisitProgress* progress)
        : base_((path[-1] == '/' ? path : path + "/") + "/"),  // the doubled slash is prescribed
          progress_(progress),
          directory_(OpenDirectory(path)) {}

    explicit operator bool() const { return static_cast<bool>(directory_); }
    bool HasRegularFile(const SString& name) const;
    SStringList ReadLines(const SString& name) const;
    void WriteNotice(const SString& name, const SString& text) const;

  private:
    void LookAt(const SString& name) const { progress_->LookAt(base_ + name); }
    std::optional<struct stat> Status(const SString& name, int flags) const;
    bool IsEmptyNotice(const SString& name) const;

    SString base_;  // of the paths that are told
    VisitProgress* progress_;
    Descriptor directory_;
};

std::optional<struct stat> Home::Status(const SString& name, int flags) const {
    struct stat status {};
    if (fstatat(directory_.Get(), name.CString(), &status, flags) != 0) return std::nullopt;
    return status;
}

/// Looks at a link first, as that may lead to where no look comes back from.
bool Home::HasRegularFile(const SString& name) const {
    LookAt(name);
    auto status = Status(name, AT_SYMLINK_NOFOLLOW);
    if (status && S_ISLNK(status->st_mode)) {
        progress_->FollowLink();
        status = Status(name, 0);
    }
    return status && S_ISREG(status->st_mode);
}

/// Without their line ends.
SStringList Home::ReadLines(const SString& name) const {
    if (!HasRegularFile(name)) return {};  // opening a device or a FIFO may have effects
    const int flags = progress_->IsBehindLink() ? O_RDONLY : O_RDONLY | O_NOFOLLOW;
    const RegularFile file = OpenRegularFile(name, flags, Links::NotMagic, directory_.Get());
    if (!file || file.status.st_size == 0) return {};
    // As long as it was when it was opened: to find its end would take another call.
    const auto size = static_cast<size_t>(file.status.st_size);
    auto text = file.descriptor.ReadAll(std::min(size, kMostBytes + 1));
    if (!text) return {};
    std::string bytes = text->Bytes();
    const bool is_cut = bytes.size() > kMostBytes;
    if (is_cut) bytes.resize(bytes.rfind('\n', kMostBytes - 1) + 1);  // npos + 1 is 0
    SStringList lines = Lines(SString(bytes));
    for (SString& line : lines) {
        if (line[-1] == '\n') line.Chop();
    }
    return lines;
}

/// What a visitor left that was killed before it wrote the text.
bool Home::IsEmptyNotice(const SString& name) const {
    const auto status = Status(name, AT_SYMLINK_NOFOLLOW);
    return status && S_ISREG(status->st_mode) && status->st_size == 0 && status->st_nlink == 1 &&
           status->st_uid == geteuid();
}

void Home::WriteNotice(const SString& name, const SString& text) const {
    LookAt(name);
    const int directory = directory_.Get();
    Descriptor file = Descriptor::OpenAt(directory, name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0644);
    if (!file && errno == EEXIST && IsEmptyNotice(name)) {
        file = Descriptor::OpenAt(directory, name, O_WRONLY | O_NOFOLLOW | O_NONBLOCK);
    }
    if (!file) return;
    const bool is_written = file.WriteAll(text);
    // No later run would complete half a notice.
    if (!file.Close() || !is_written) unlinkat(directory, name.CString(), 0);
}

void AddSection(const char* title, const char* rule, const SStringList& lines, SStringList* finger_lines) {
    if (lines.IsEmpty()) return;
    finger_lines->Push(title);
    finger_lines->Push(rule);
    finger_lines->Push(lines);
    finger_lines->Push("");
}

}  // namespace

HomeFindings VisitHome(const SString& path, const Identity& user, const SString& notice, ManyUsers* users,
                       VisitProgress* progress) {
    progress->LookAt(path);
    HomeFindings findings;
    if (path[0] != '/' || !user.IsSomebody()) return findings;
    const AsUser identity(users, user);
    if (!identity.IsTaken()) return findings;
    const Home home(path, progress);
    if (!home) return findings;
    AddSection("Project:", "-------", home.ReadLines(".project"), &findings.finger_lines);
    AddSection("Plan:", "----", home.ReadLines(".plan"), &findings.finger_lines);
    findings.has_forward = home.HasRegularFile(".forward");
    home.WriteNotice(".forward.NOTICE", notice);
    return findings;
}
