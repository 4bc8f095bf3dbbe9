// The account store's transaction and what is written inside it.
#include <fcntl.h>

#include "support/database/account_session.h"
#include "support/system/descriptor.h"

using sqlite::Execution;
using sqlite::Step;

namespace {

const SString kAddressField = "SMTP-Address";

}  // namespace

bool AccountStore::Begin() {
    is_in_transaction_ = true;
    if (OpenSession(true) == DatabaseState::Ready) transaction_.emplace(*session_->connection);
    return IsWritable();
}

void AccountStore::TakeBack() {
    transaction_.reset();
    ++epoch_;
}

bool AccountStore::End(bool commit) {
    const bool is_done = commit && IsWritable() && transaction_->Commit();
    if (!is_done) ++epoch_;
    transaction_.reset();
    is_in_transaction_ = false;
    return is_done;
}

// A checkpoint brings the log into the database and syncs both; what another process's reading holds back is
// synced in the log itself.
bool AccountStore::Sync() {
    const DatabaseState state = OpenSession(false);
    if (state != DatabaseState::Ready) return state == DatabaseState::Missing;
    if (!session_->connection->Execute("PRAGMA wal_checkpoint")) return false;
    const SString log = session_->path + "-wal";
    const Descriptor file = Descriptor::Open(log, O_RDONLY);
    return (!file || file.Sync()) && SyncParent(session_->path);
}

// A failed look-up never passes for "there is none": somebody's account would be written over.
AccountStore::Binding AccountStore::Bind(const SString& uid) {
    if (Execution(session_->add, uid).Run() && session_->connection->HasChanged()) {
        return {session_->connection->LastId(), true};
    }
    Execution query(session_->find, uid);
    return query.Next() == Step::Row ? Binding{query.Number(0), false} : Binding{};
}

// The id of a deleted account may be given to the next one.
bool AccountStore::Holds(int64_t id, const SString& uid) {
    return Execution(session_->holds, id, uid).Next() == Step::Row;
}

bool AccountStore::Delete(const SString& uid) {
    ++epoch_;
    const int64_t id = [&] {
        Execution query(session_->find, uid);
        return query.Next() == Step::Row ? query.Number(0) : 0;
    }();
    return id != 0 && RemoveAddresses(id) && Execution(session_->remove_fields, id).Run() &&
           Execution(session_->remove, id).Run();
}

bool AccountStore::SetField(int64_t id, const SString& uid, const SString& field, const SStringList& values) {
    const bool has_addresses = field == kAddressField;
    if (!Holds(id, uid) || (has_addresses && !RemoveAddresses(id)) ||
        !Execution(session_->remove_field, id, field).Run()) {
        return false;
    }
    int64_t position = 0;
    for (const SString& value : values) {
        if (!Execution(session_->add_value, id, field, position++, value).Run()) return false;
    }
    return !has_addresses || AddAddresses(id, values);
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

// The index leads from addresses to accounts only, so the field that they came from names them.
bool AccountStore::RemoveAddresses(int64_t id) {
    Execution old(session_->values, id, kAddressField);
    Step step = old.Next();
    for (; step == Step::Row; step = old.Next()) {
        const SString key = S821Address(old.Text(0)).Key();
        if (!Execution(session_->remove_address, key, id).Run()) return false;
    }
    return step == Step::Done;
}
