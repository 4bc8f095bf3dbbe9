#include "support/database/snapshot.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "support/system/file.h"
#include "support/system/regular_file.h"

namespace {

constexpr int kTries = 50;
constexpr useconds_t kPause = 20'000;
constexpr size_t kMostBytes = size_t{1} << 30;

uint32_t BigEndianAt(std::string_view bytes, size_t at) {
    uint32_t number = 0;
    for (size_t i = 0; i < 4; ++i) number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
    return number;
}

/// The checksum of a log, which goes on from frame to frame.
class Checksum {
  public:
    explicit Checksum(bool is_big_endian) : is_big_endian_(is_big_endian) {}
    void Add(std::string_view bytes) {
        for (size_t at = 0; at + 8 <= bytes.size(); at += 8) {
            first_ += Word(bytes, at) + second_;
            second_ += Word(bytes, at + 4) + first_;
        }
    }
    bool IsAt(std::string_view bytes, size_t at) const {
        return BigEndianAt(bytes, at) == first_ && BigEndianAt(bytes, at + 4) == second_;
    }

  private:
    uint32_t Word(std::string_view bytes, size_t at) const {
        const uint32_t word = BigEndianAt(bytes, at);
        return is_big_endian_ ? word : __builtin_bswap32(word);
    }
    bool is_big_endian_;
    uint32_t first_ = 0;
    uint32_t second_ = 0;
};

constexpr size_t kHeader = 32;  // of the log
constexpr size_t kFrameHeader =
    24;  // the page's number, the database's pages after a commit, salts, checksum
constexpr uint32_t kMagic = 0x377F0682;
constexpr uint32_t kMostPage = 65536;

bool IsPageSize(uint32_t size) {
    return size >= 512 && size <= kMostPage && (size & (size - 1)) == 0;
}

/// Puts the frame's page in its place.
void Apply(std::string_view frame, size_t page_size, std::string* database) {
    const size_t at = (size_t{BigEndianAt(frame, 0)} - 1) * page_size;
    if (database->size() < at + page_size) database->resize(at + page_size);
    database->replace(at, page_size, frame.substr(kFrameHeader));
}

/// The end of the last frame that commits, of those whose checksums and salts are right.
size_t EndOfCommits(std::string_view log, size_t frame_size, Checksum checksum) {
    const std::string_view salts = log.substr(16, 8);
    size_t end = kHeader;
    for (size_t at = kHeader; at + frame_size <= log.size(); at += frame_size) {
        const std::string_view frame = log.substr(at, frame_size);
        const uint32_t page = BigEndianAt(frame, 0);
        checksum.Add(frame.substr(0, 8));
        checksum.Add(frame.substr(kFrameHeader));
        if (frame.substr(8, 8) != salts || !checksum.IsAt(frame, 16) || page == 0) break;
        if ((size_t{page} * frame_size) > kMostBytes) break;
        if (BigEndianAt(frame, 4) != 0) end = at + frame_size;
    }
    return end;
}

void ApplyLog(std::string_view log, std::string* database) {
    if (log.size() < kHeader || (BigEndianAt(log, 0) & ~1U) != kMagic) return;
    const size_t page_size = BigEndianAt(log, 8);
    Checksum checksum((BigEndianAt(log, 0) & 1U) != 0);
    checksum.Add(log.substr(0, 24));
    if (!IsPageSize(static_cast<uint32_t>(page_size)) || !checksum.IsAt(log, 24)) return;
    const size_t frame_size = kFrameHeader + page_size;
    const size_t end = EndOfCommits(log, frame_size, checksum);
    for (size_t at = kHeader; at < end; at += frame_size) {
        const std::string_view frame = log.substr(at, frame_size);
        Apply(frame, page_size, database);
        if (const size_t pages = BigEndianAt(frame, 4); pages != 0 && pages * frame_size <= kMostBytes) {
            database->resize(pages * page_size);
        }
    }
}

std::optional<SString> ReadAll(const SString& path) {
    const RegularFile file = OpenRegularFile(path, O_RDONLY, Links::All);
    return file ? file.descriptor.ReadAll(kMostBytes) : std::nullopt;
}

/// The empty text where there is none.
std::optional<SString> ReadLog(const SString& database) {
    const SString log = database + "-wal";
    return IsMissing(log) ? SString() : ReadAll(log);
}

/// Nothing while somebody writes. A log that only grew is no harm: what was moved from it to the database
/// meanwhile is in it, too.
std::optional<SString> TryToRead(const SString& path) {
    const SString journal = path + "-journal";
    const auto before = ReadLog(path);
    if (!before || FileSize(journal) > 0) return std::nullopt;
    const auto database = ReadAll(path);
    const auto again = ReadAll(path);
    const auto log = ReadLog(path);
    if (!database || !log || !log->StartsWith(before->Bytes()) || FileSize(journal) > 0) return std::nullopt;
    // Without a log, whoever writes does it in the file.
    if (log->IsEmpty() && again != database) return std::nullopt;
    return WithLog(*database, *log);
}

}  // namespace

SString WithLog(const SString& database, const SString& log) {
    constexpr size_t kWriteVersion = 18;
    constexpr char kHasLog = 2;
    std::string bytes = database.Bytes();
    // A new one is in its log only.
    if (bytes.empty() || database[kWriteVersion] == kHasLog) ApplyLog(log.Bytes(), &bytes);
    // Says that there is no log, which a database in memory cannot have.
    if (bytes.size() > kWriteVersion + 1) bytes[kWriteVersion] = bytes[kWriteVersion + 1] = 1;
    return SString(std::move(bytes));
}

std::optional<SString> ReadSnapshot(const SString& path) {
    const SString place = RealPath(path);  // of a link, the log lies beside what it leads to
    for (int i = 0; i < kTries && !place.IsEmpty(); ++i) {
        if (auto bytes = TryToRead(place)) return bytes;
        usleep(kPause);
    }
    return std::nullopt;
}
