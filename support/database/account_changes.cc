// Implements the account store's transaction and its changes.
#include <fcntl.h>

#include <cstdint>
#include <utility>

#include "support/database/account_session.h"
#include "support/system/descriptor.h"

using sqlite::Execution;
using sqlite::Step;

namespace {

const SString kAddressField = "SMTP-Address";

}  // namespace

bool AccountStore::Begin() {
    is_in_transaction_ = true;
    transaction_use_.emplace(*this);
    if (OpenSession(true) == DatabaseState::Ready) transaction_.emplace(*session_->connection);
    return IsWritable();
}

void AccountStore::RollBack() {
    // Once a transaction: each new epoch makes the search for free UIDs start over.
    if (!transaction_) return;
    transaction_.reset();
    ++epoch_;
}

bool AccountStore::End(bool commit) {
    const bool is_done = commit && transaction_ && transaction_->Commit();
    if (is_done) is_unsynced_ = true;
    if (!is_done) ++epoch_;
    fresh_ = {};
    transaction_.reset();
    is_in_transaction_ = false;
    transaction_use_.reset();
    return is_done;
}

// A checkpoint copies the log into the database and syncs both. The log is synced again for what had to stay
// in it because another process is reading.
bool AccountStore::Sync() {
    const Use use(*this);
    const bool has_failed_before = std::exchange(has_sync_failed_, false);
    const DatabaseState state = OpenSession(false);
    if (state != DatabaseState::Ready) return state == DatabaseState::Missing && !has_failed_before;
    is_unsynced_ = false;
    if (!Checkpoint() || has_failed_before) return false;
    const SString log = session_->path + "-wal";
    const Descriptor file = Descriptor::Open(log, O_RDONLY);
    return (!file || file.Sync()) && SyncParent(session_->path);
}

// A failed look-up is refused, not taken for a new account: that would overwrite somebody's.
AccountStore::Binding AccountStore::Bind(const SString& uid) {
    if (Execution(session_->add, uid).Run() && session_->connection->HasChanged()) {
        return BindFresh(uid);
    }
    Execution query(session_->find, uid);
    return query.Next() == Step::Row ? Binding{query.Number(0), false} : Binding{};
}

/// Whatever a damaged database holds under the new id is nobody's.
AccountStore::Binding AccountStore::BindFresh(const SString& uid) {
    const int64_t id = session_->connection->LastId();
    if (!RemoveAddresses(id) || !Execution(session_->remove_fields, id).Run()) return {};
    fresh_ = {id, uid, {}};
    return {id, true};
}

// SQLite may give a deleted account's id to the next one.
bool AccountStore::Holds(int64_t id, const SString& uid) {
    return Execution(session_->holds, id, uid).Next() == Step::Row;
}

bool AccountStore::Delete(const SString& uid) {
    ++epoch_;
    fresh_ = {};
    const int64_t id = [&] {
        Execution query(session_->find, uid);
        return query.Next() == Step::Row ? query.Number(0) : 0;
    }();
    return id != 0 && RemoveAddresses(id) && Execution(session_->remove_fields, id).Run() &&
           Execution(session_->remove, id).Run();
}

bool AccountStore::SetField(int64_t id, const SString& uid, const SString& field, const SStringList& values) {
    if (!NoteFirstValue(id, uid, field) && !RemoveField(id, uid, field)) return false;
    int64_t position = 0;
    for (const SString& value : values) {
        if (!Execution(session_->add_value, id, field, position++, value).Run()) return false;
    }
    return field != kAddressField || AddAddresses(id, values);
}

/// True for a field's first values in the account that this transaction made: there is nothing to look up and
/// remove then, which would be most of the cost of making one.
bool AccountStore::NoteFirstValue(int64_t id, const SString& uid, const SString& field) {
    if (id != fresh_.id || uid != fresh_.uid || fresh_.fields.Contains(field)) return false;
    fresh_.fields.Push(field);
    return true;
}

bool AccountStore::RemoveField(int64_t id, const SString& uid, const SString& field) {
    return Holds(id, uid) && (field != kAddressField || RemoveAddresses(id)) &&
           Execution(session_->remove_field, id, field).Run();
}

bool AccountStore::Lock(int64_t id, const SString& uid) {
    return Execution(session_->lock, id, uid).Run() && session_->connection->HasChanged();
}

bool AccountStore::AddAddresses(int64_t id, const SStringList& values) {
    for (const SString& value : values) {
        const SString key = S821Address(value).Key();
        if (!key.IsEmpty() && !Execution(session_->add_address, key, id).Run()) return false;
    }
    return true;
}

// The rows have no index by account; the field's values say which ones to remove.
bool AccountStore::RemoveAddresses(int64_t id) {
    Execution old(session_->values, id, kAddressField);
    Step step = old.Next();
    for (; step == Step::Row; step = old.Next()) {
        const SString key = S821Address(old.Text(0)).Key();
        if (!Execution(session_->remove_address, key, id).Run()) return false;
    }
    return step == Step::Done;
}
