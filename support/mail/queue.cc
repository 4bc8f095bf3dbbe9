// Reads, writes and removes the queue's files under a directory lock.
#include "support/mail/queue.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "support/mail/field_text.h"
#include "support/system/environment.h"
#include "support/system/file.h"
#include "support/system/pending_file.h"
#include "support/system/regular_file.h"

namespace {

const char kControlSuffix[] = "-Control";
const char kHeaderSuffix[] = "-Header";
const char kBodySuffix[] = "-Body";

SString MessageDirectory() {
    return GetEnv("TernHarbor") + "/messages/";
}

SString Directory(const SString& path) {
    size_t slash = path.Bytes().rfind('/');
    return slash == std::string::npos ? SString(".") : SString(path.Bytes().substr(0, slash + 1));
}

/// The lock on a directory's queue files, for a scope: shared (LOCK_SH) or exclusive (LOCK_EX).
class DirectoryLock {
  public:
    DirectoryLock(const SString& directory, int kind) : directory_(Descriptor::Open(directory, O_RDONLY)) {
        constexpr int kTries = 500;
        constexpr useconds_t kPause = 10000;  // microseconds: 5 s in all
        for (int i = 0; directory_ && !held_ && i < kTries; ++i) {
            held_ = flock(directory_.Get(), kind | LOCK_NB) == 0;
            if (!held_ && errno != EWOULDBLOCK && errno != EINTR) return;  // no time gives a lock here
            if (!held_) usleep(kPause);
        }
    }
    bool IsHeld() const { return held_; }

  private:
    Descriptor directory_;
    bool held_ = false;
};

std::optional<SString> RegularContents(const SString& path) {
    const RegularFile file = OpenRegularFile(path, O_RDONLY, Links::NotAtEnd);
    return file ? file.descriptor.ReadAll() : std::nullopt;
}

}  // namespace

SField::SField(const SString& line_end) : line_end_(line_end) {}
SField::~SField() = default;

void SField::SetPath(const SString& path) {
    Discard();
    path_ = path;
}

bool SField::Read() {
    DirectoryLock lock(Directory(path_), LOCK_SH);
    if (!lock.IsHeld()) return false;
    auto text = RegularContents(path_);
    auto fields = text ? ParseFieldText(*text) : std::nullopt;
    if (!fields) return false;
    static_cast<SNamedStringList&>(*this) = *fields;
    return true;
}

bool SField::Write() {
    return Prepare() && Publish();
}

bool SField::Prepare() {
    Discard();
    auto text = FieldText(*this, line_end_);
    if (!text) return false;
    auto file = std::make_unique<PendingFile>(path_);
    if (!file->Write(*text)) return false;
    pending_ = std::move(file);
    return true;
}

bool SField::Publish() {
    if (!pending_) return false;
    DirectoryLock lock(Directory(path_), LOCK_EX);
    // A new name has no readers whom the lock would keep away, and not every file system has locks.
    const bool may_appear = lock.IsHeld() || !EntryExists(path_);
    bool published = may_appear && pending_->Publish();
    Discard();
    return published;
}

void SField::Discard() {
    pending_.reset();
}

SString MessageBytes(const SStringList& files) {
    std::vector<std::string_view> views;
    for (const SString& file : files) views.emplace_back(file.Bytes());
    std::string all;
    TakeMessageBytes(views, [&](std::string_view piece) { all += piece; });
    return SString(std::move(all));
}

void TakeMessageBytes(const std::vector<std::string_view>& files,
                      const std::function<void(std::string_view)>& take) {
    for (const std::string_view file : files) {
        take(std::to_string(file.size()) + ":");
        take(file);
    }
}

SControl::SControl()
    : SField("\n"),
      module_(GetEnv("ModuleName")),
      control_directory_(GetEnv("TernHarbor") + "/control/"),
      deferred_directory_(GetEnv("TernHarbor") + "/deferred/" + module_ + "/"),
      message_directory_(MessageDirectory()) {}

void SControl::PutFilename(const SString& name) {
    bool is_path = name.Index('/') >= 0;
    SetPath(is_path ? name : control_directory_ + name + kControlSuffix);
}

SString SControl::GetFilename() const {
    return BaseName(Path(), kControlSuffix);
}

bool SControl::Read(const SString& name) {
    PutFilename(name);
    return Read();
}

bool SControl::Write(const SString& name) {
    PutFilename(name);
    return Write();
}

bool SControl::Prepare(const SString& name) {
    PutFilename(name);
    return Prepare();
}

SString SControl::HeaderPath() const {
    return message_directory_ + GetFilename() + kHeaderSuffix;
}

SString SControl::BodyPath() const {
    return message_directory_ + GetFilename() + kBodySuffix;
}

void SControl::RemoveMessage() {
    Discard();
    if (GetFilename().IsEmpty()) return;
    DirectoryLock lock(control_directory_, LOCK_EX);
    RemoveFile(Path());  // first: the control file makes the message exist
    RemoveFile(HeaderPath());
    RemoveFile(BodyPath());
}

std::optional<SString> SControl::ReadMessage() const {
    const auto control = RegularContents(Path());
    if (!control) return std::nullopt;
    SStringList files = *control;
    for (const SString& path : {HeaderPath(), BodyPath()}) {
        const auto text = RegularContents(path);
        if (!text && EntryExists(path)) return std::nullopt;
        if (text) files.Push(*text);
    }
    return MessageBytes(files);
}

bool SControl::RemoveMessageIf(const std::function<bool(const SString&)>& is_meant) {
    Discard();
    if (GetFilename().IsEmpty()) return false;
    DirectoryLock lock(control_directory_, LOCK_EX);
    const auto bytes = lock.IsHeld() ? ReadMessage() : std::nullopt;
    if (!bytes || !is_meant(*bytes)) return false;
    const SString withdrawn = HiddenBeside(Path(), "." + ProcessIdString() + ".0");
    if (!Rename(Path(), withdrawn)) return false;
    RemoveFile(HeaderPath());
    RemoveFile(BodyPath());
    RemoveFile(withdrawn);
    return true;
}

SHeader::SHeader() : SField("\r\n"), directory_(MessageDirectory()) {}

void SHeader::PutFilename(const SString& name) {
    SetPath(directory_ + name + kHeaderSuffix);
}

SString SHeader::GetFilename() const {
    return BaseName(Path(), kHeaderSuffix);
}

bool SHeader::Read(const SString& name) {
    PutFilename(name);
    return Read();
}

bool SHeader::Write(const SString& name) {
    PutFilename(name);
    return Write();
}
