// Reads and writes in a home, as its user.
#include "install/visits/home_visit.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "support/system/file.h"
#include "support/system/regular_file.h"

namespace {

constexpr size_t kMostBytes = size_t{1} << 20;

/// Whether the path leads to a regular file. Looks at a link first, as that may lead to where no look comes
/// back from.
bool LeadsToRegularFile(const SString& path, VisitProgress* progress) {
    struct stat facts {};
    progress->LookAt(path);
    if (lstat(path.CString(), &facts) != 0) return false;
    if (!S_ISLNK(facts.st_mode)) return S_ISREG(facts.st_mode);
    progress->FollowLink();
    return IsRegular(path);
}

/// The lines of a user's file, without their line ends.
SStringList ReadLines(const SString& path, VisitProgress* progress) {
    if (!LeadsToRegularFile(path, progress)) return {};  // opening a device or a FIFO may have effects
    const RegularFile file =
        OpenRegularFile(path, progress->IsBehindLink() ? O_RDONLY : O_RDONLY | O_NOFOLLOW, Links::NotMagic);
    if (!file || file.status.st_size == 0) return {};
    auto text = file.descriptor.ReadAll(kMostBytes + 1);
    if (!text) return {};
    std::string bytes = text->Bytes();
    bool is_cut = bytes.size() > kMostBytes;
    if (is_cut) bytes.resize(bytes.rfind('\n', kMostBytes - 1) + 1);  // npos + 1 is 0
    SStringList lines = Lines(SString(bytes));
    for (SString& line : lines) {
        if (line[-1] == '\n') line.Chop();
    }
    return lines;
}

void AddSection(const char* title, const char* rule, const SStringList& lines, SStringList* finger_lines) {
    if (lines.IsEmpty()) return;
    finger_lines->Push(title);
    finger_lines->Push(rule);
    finger_lines->Push(lines);
    finger_lines->Push("");
}

/// What a visitor left that was killed before it wrote the text.
bool IsEmptyNotice(const SString& path) {
    struct stat facts {};
    return lstat(path.CString(), &facts) == 0 && S_ISREG(facts.st_mode) && facts.st_size == 0 &&
           facts.st_nlink == 1 && facts.st_uid == geteuid();
}

void WriteNotice(const SString& path, const SString& text) {
    Descriptor file = Descriptor::Open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0644);
    if (!file && errno == EEXIST && IsEmptyNotice(path)) {
        file = Descriptor::Open(path, O_WRONLY | O_NOFOLLOW | O_NONBLOCK);
    }
    if (!file) return;
    bool written = file.WriteAll(text);
    if (!file.Close() || !written) RemoveFile(path);  // no later run would complete half a notice
}

}  // namespace

HomeFindings VisitHome(const SString& home, const Identity& user, const SString& notice,
                       VisitProgress* progress) {
    progress->LookAt(home);
    HomeFindings findings;
    if (home[0] != '/' || !user.IsSomebody()) return findings;
    AsUser identity(user);
    if (!identity.IsTaken()) return findings;
    // The doubled slash is prescribed.
    const SString base = (home[-1] == '/' ? home : home + "/") + "/";
    AddSection("Project:", "-------", ReadLines(base + ".project", progress), &findings.finger_lines);
    AddSection("Plan:", "----", ReadLines(base + ".plan", progress), &findings.finger_lines);
    findings.has_forward = LeadsToRegularFile(base + ".forward", progress);
    progress->LookAt(base + ".forward.NOTICE");
    WriteNotice(base + ".forward.NOTICE", notice);
    return findings;
}
