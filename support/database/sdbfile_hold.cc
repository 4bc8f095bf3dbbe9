// Holds a module's database while its settings are copied and its file is exchanged, and readies files for
// that.
#include <fcntl.h>

#include "support/database/sdbfile_state.h"
#include "support/system/file.h"
#include "support/system/regular_file.h"

namespace {

/// A transaction that changes nothing.
bool Rewrite(sqlite::Connection& connection) {
    const SString mark = SString("PRAGMA application_id = ") + kModuleFormat.application_id;
    return connection.Execute(mark.CString());
}

bool HasSomethingBeside(const SString& path) {
    return EntryExists(path + "-journal") || EntryExists(path + "-wal");
}

}  // namespace

Sdbfile::Holding Sdbfile::TryToHold() {
    CloseDB();
    const SString path = DatabasePath(state_->name);
    if (!EntryExists(path)) return Holding::NotNeeded;
    OpenedDatabase database{DatabaseState::Foreign, nullptr};
    if (MayWriteDatabase(path)) database = OpenForWriting(path, kModuleFormat);
    if (database.state == DatabaseState::Foreign) {
        return HasSomethingBeside(path) ? Holding::Refused : Holding::NotNeeded;
    }
    if (database.state != DatabaseState::Ready) return Holding::Refused;
    state_->connection = std::move(database.connection);
    state_->hold.emplace(*state_->connection);
    if (!state_->hold->IsOpen()) return Holding::Refused;
    if (state_->connection->HasMoved()) return Holding::Again;
    if (!HasSomethingBeside(path)) return Holding::Held;
    state_->hold.reset();  // its end would remove only a journal of its own
    return Rewrite(*state_->connection) ? Holding::Again : Holding::Refused;
}

bool Sdbfile::Hold() {
    const auto end = std::chrono::steady_clock::now() + sqlite::kLockWait;
    Holding holding = TryToHold();
    while (holding == Holding::Again && std::chrono::steady_clock::now() < end) holding = TryToHold();
    if (holding == Holding::Held) return true;
    CloseDB();
    return holding == Holding::NotNeeded;
}

bool Sdbfile::IsHeldAs(const SString& database) const {
    struct stat held {};
    struct stat other {};
    return state_->hold && stat(DatabasePath(state_->name).CString(), &held) == 0 &&
           stat(DatabasePath(database).CString(), &other) == 0 && IsSameFile(held, other);
}

std::optional<SString> Sdbfile::Bytes() const {
    if (state_->hold) return state_->connection->Bytes();
    const RegularFile file = OpenRegularFile(DatabasePath(state_->name), O_RDONLY, Links::NotAtEnd);
    return file ? file.descriptor.ReadAll() : std::nullopt;
}

bool SettleDatabase(const SString& database) {
    const SString path = DatabasePath(database);
    if (path.IsEmpty()) return false;
    // Opening what is missing would make it.
    if (!EntryExists(path) || !HasSomethingBeside(path)) return true;
    // Opening works off a journal with contents; an empty one only goes with the next transaction.
    const OpenedDatabase opened = OpenForWriting(path, kModuleFormat);
    return opened.state == DatabaseState::Ready &&
           (!HasSomethingBeside(path) || Rewrite(*opened.connection)) && !HasSomethingBeside(path);
}
