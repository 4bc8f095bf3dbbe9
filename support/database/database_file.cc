#include "support/database/database_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include "support/database/snapshot.h"
#include "support/system/descriptor.h"
#include "support/system/environment.h"
#include "support/system/file.h"

namespace {

bool g_only_look = false;

constexpr mode_t kMode = 0640;
constexpr std::chrono::milliseconds kLockPause{5};

// Rejects FIFOs and devices before SQLite opens them.
DatabaseState LookAt(const SString& path) {
    struct stat facts {};
    if (path.IsEmpty()) return DatabaseState::Failed;
    if (stat(path.CString(), &facts) != 0) {
        return errno == ENOENT ? DatabaseState::Missing : DatabaseState::Failed;
    }
    return S_ISREG(facts.st_mode) ? DatabaseState::Ready : DatabaseState::Foreign;
}

// fchmod, because the mode must not depend on the umask. O_EXCL, because closing a second descriptor of an
// existing file would drop the locks that other handles of this process hold on it (POSIX).
bool MakeFile(const SString& path) {
    const Descriptor file = Descriptor::Open(path, O_WRONLY | O_CREAT | O_EXCL, kMode);
    return file ? fchmod(file.Get(), kMode) == 0 : errno == EEXIST;
}

bool MayWrite(const SString& path) {
    return faccessat(AT_FDCWD, path.CString(), W_OK, AT_EACCESS) == 0;
}

// Beside a database that it may only read, SQLite would leave read-only files, which stop a later run even
// after the database's permissions are mended. So such a database is opened as immutable, unless a killed
// process left a log or journal to work off.
sqlite::Mode ModeFor(const SString& path) {
    const bool has_pending_work = FileSize(path + "-wal") > 0 || EntryExists(path + "-journal");
    return MayWriteDatabase(path) || has_pending_work ? sqlite::Mode::Shared : sqlite::Mode::Immutable;
}

// Within a transaction: another process may be making the database.
DatabaseState Recognise(sqlite::Connection& connection, const DatabaseFormat& format) {
    const auto id = connection.Value("PRAGMA application_id");
    if (id && *id == format.application_id) return DatabaseState::Ready;
    const auto tables = connection.Value("SELECT count(*) FROM sqlite_schema");
    if (!tables) return connection.IsDamaged() ? DatabaseState::Foreign : DatabaseState::Failed;
    return *tables == "0" ? DatabaseState::Missing : DatabaseState::Foreign;
}

std::unique_ptr<sqlite::Connection> OpenSnapshot(const SString& path) {
    const auto bytes = ReadSnapshot(path);
    return bytes ? sqlite::Connection::OpenCopy(*bytes) : nullptr;
}

DatabaseState Look(sqlite::Connection* connection, const DatabaseFormat& format) {
    if (connection == nullptr) return DatabaseState::Failed;
    const sqlite::Transaction snapshot(*connection, sqlite::Access::Reading);
    return snapshot.IsOpen() ? Recognise(*connection, format) : DatabaseState::Failed;
}

bool MakeSchema(sqlite::Connection& connection, const DatabaseFormat& format) {
    sqlite::Transaction transaction(connection);
    if (!transaction.IsOpen()) return false;
    const DatabaseState state = Recognise(connection, format);
    if (state != DatabaseState::Missing) return state == DatabaseState::Ready;  // another was faster
    const SString mark = SString("PRAGMA application_id = ") + format.application_id;
    return connection.Execute(format.schema) && connection.Execute(mark.CString()) && transaction.Commit();
}

// SQLite waits for no lock here, as two processes that change the mode would wait for each other.
std::optional<SString> SetJournalMode(sqlite::Connection& connection, const char* mode) {
    const SString change = SString("PRAGMA journal_mode = ") + mode;
    const auto end = std::chrono::steady_clock::now() + sqlite::kLockWait;
    auto result = connection.Value(change.CString());
    while (!result && connection.IsLocked() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(kLockPause);
        result = connection.Value(change.CString());
    }
    return result;
}

// On a file system without write-ahead logs SQLite keeps its rollback journal, which needs full syncing.
bool SetDurability(sqlite::Connection& connection, const DatabaseFormat& format) {
    const auto mode = SetJournalMode(connection, format.journal_mode);
    const bool has_mode = mode && *mode == SString(format.journal_mode).LowerCase();
    const SString synchronous = SString("PRAGMA synchronous = ") + (has_mode ? format.synchronous : "FULL");
    return mode && connection.Execute(synchronous.CString());
}

}  // namespace

SString DatabasePath(const SString& name) {
    const SString directory = GetEnv("TernHarbor");
    const bool leads_elsewhere = name.Index('/') >= 0 || name.Index('\0') >= 0 || name == "." || name == "..";
    return directory.IsEmpty() || name.IsEmpty() || leads_elsewhere ? SString()
                                                                    : directory + "/config/" + name;
}

bool MayWriteDatabase(const SString& path) {
    return MayWrite(path) && MayWrite(path.S("[^/]+$", ""));
}

OpenedDatabase OpenForReading(const SString& path, const DatabaseFormat& format) {
    OpenedDatabase database{LookAt(path), nullptr};
    if (database.state != DatabaseState::Ready) return database;
    const sqlite::Mode mode = ModeFor(path);
    auto connection = g_only_look ? OpenSnapshot(path) : sqlite::Connection::Open(path, mode);
    database.is_snapshot = !g_only_look && mode == sqlite::Mode::Immutable;
    database.state = Look(connection.get(), format);
    if (database.state == DatabaseState::Ready) database.connection = std::move(connection);
    return database;
}

void OnlyLookAtDatabases() {
    g_only_look = true;
}

OpenedDatabase OpenForWriting(const SString& path, const DatabaseFormat& format) {
    if (g_only_look) return {DatabaseState::Failed, nullptr};
    if (LookAt(path) == DatabaseState::Missing && !MakeFile(path)) {
        return {DatabaseState::Failed, nullptr};
    }
    const DatabaseState file = LookAt(path);
    if (file == DatabaseState::Foreign) return {file, nullptr};
    if (file != DatabaseState::Ready || ModeFor(path) != sqlite::Mode::Shared) {
        return {DatabaseState::Failed, nullptr};
    }
    auto connection = sqlite::Connection::Open(path, sqlite::Mode::Shared);
    const DatabaseState state = Look(connection.get(), format);
    if (state != DatabaseState::Ready && state != DatabaseState::Missing) return {state, nullptr};
    const bool is_usable = SetDurability(*connection, format) &&
                           (state == DatabaseState::Ready || MakeSchema(*connection, format));
    return is_usable ? OpenedDatabase{DatabaseState::Ready, std::move(connection)}
                     : OpenedDatabase{DatabaseState::Failed, nullptr};
}
