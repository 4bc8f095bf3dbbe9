// The account store's transactions and what is written inside them.
#include <fcntl.h>

#include "support/account_session.h"
#include "support/descriptor.h"

using sqlite::Execution;
using sqlite::Step;

namespace {

const SString kAddressField = "SMTP-Address";

}  // namespace

bool AccountStore::Begin() {
    if (depth_++ == 0) {
        is_broken_ = OpenSession(true) != DatabaseState::Ready;
        if (!is_broken_) {
            transaction_.emplace(*session_->connection);
            is_broken_ = !transaction_->IsOpen();
        }
    }
    return !is_broken_;
}

// After a failure nothing inside the outermost transaction may write any more: it would be lasting at once,
// since the transaction around it is gone.
bool AccountStore::End(bool commit) {
    const bool is_outermost = --depth_ == 0;
    is_broken_ =
        is_broken_ || !commit || !transaction_->IsOpen() || (is_outermost && !transaction_->Commit());
    if (is_broken_) {
        ++epoch_;
    }
    if (is_broken_ || is_outermost) {
        transaction_.reset();
    }
    return !is_broken_;
}

// A checkpoint brings the log into the database and syncs both. While another process reads, a part of the
// log has to wait; then the log itself is what must be on the disk.
bool AccountStore::Sync() {
    const DatabaseState state = OpenSession(false);
    if (state != DatabaseState::Ready) {
        return state == DatabaseState::Missing;
    }
    if (!session_->connection->Execute("PRAGMA wal_checkpoint")) {
        return false;
    }
    const SString log = session_->path + "-wal";
    const Descriptor file = Descriptor::Open(log, O_RDONLY);
    return (!file || file.Sync()) && SyncParent(session_->path);
}

AccountStore::Binding AccountStore::Bind(const SString& uid) {
    if (Execution(session_->add, uid).Run() && session_->connection->HasChanged()) {
        return {session_->connection->LastId(), true};
    }
    Execution query(session_->find, uid);
    return query.Next() == Step::Row ? Binding{query.Number(0), false} : Binding{};
}

// The id alone would not do: once the newest account is deleted, the next one gets its id.
bool AccountStore::Holds(int64_t id, const SString& uid) {
    return Execution(session_->holds, id, uid).Next() == Step::Row;
}

bool AccountStore::Delete(const SString& uid) {
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
        if (!Execution(session_->add_value, id, field, position++, value).Run()) {
            return false;
        }
    }
    return !has_addresses || AddAddresses(id, values);
}

bool AccountStore::Lock(int64_t id, const SString& uid) {
    return Execution(session_->lock, id, uid).Run() && session_->connection->HasChanged();
}

bool AccountStore::AddAddresses(int64_t id, const SStringList& values) {
    for (const SString& value : values) {
        const SString key = S821Address(value).Key();
        if (!key.IsEmpty() && !Execution(session_->add_address, key, id).Run()) {
            return false;
        }
    }
    return true;
}

// The index has no way from an account to its addresses; the field that they came from has.
bool AccountStore::RemoveAddresses(int64_t id) {
    Execution old(session_->values, id, kAddressField);
    Step step = old.Next();
    for (; step == Step::Row; step = old.Next()) {
        const SString key = S821Address(old.Text(0)).Key();
        if (!Execution(session_->remove_address, key, id).Run()) {
            return false;
        }
    }
    return step == Step::Done;
}
