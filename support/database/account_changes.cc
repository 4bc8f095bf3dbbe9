// The account store's transactions and what is written inside them.
#include <fcntl.h>

#include <algorithm>

#include "support/database/account_session.h"
#include "support/system/descriptor.h"

using sqlite::Execution;
using sqlite::Step;

namespace {

const SString kAddressField = "SMTP-Address";

}  // namespace

bool AccountStore::Begin() {
    ++depth_;
    if (IsWritable() && !(depth_ == 1 ? BeginTransaction() : Execution(session_->begin_part).Run())) {
        broken_from_ = std::max(1, depth_ - 1);  // a part without its mark cannot be taken back by itself
    }
    return IsWritable();
}

bool AccountStore::BeginTransaction() {
    if (OpenSession(true) != DatabaseState::Ready) return false;
    transaction_.emplace(*session_->connection);
    return transaction_->IsOpen();
}

// On a full disk and its like the library gives up the whole transaction by itself. What is still written
// then would be lasting at once, without the rest: the outermost scope has to count as broken.
bool AccountStore::End(bool commit) {
    if (transaction_ && !transaction_->IsOpen()) broken_from_ = 1;
    if (!commit && IsWritable()) Break();
    const bool is_done = depth_ == 1 ? EndTransaction() : EndPart();
    epoch_ += is_done ? 0 : 1;
    --depth_;
    if (broken_from_ > depth_) broken_from_ = INT_MAX;
    return is_done;
}

bool AccountStore::EndTransaction() {
    const bool is_done = IsWritable() && transaction_->Commit();
    transaction_.reset();
    return is_done;
}

bool AccountStore::EndPart() {
    if (broken_from_ < depth_) {
        return false;  // goes with the scope around it
    }
    const bool is_whole = IsWritable();
    if ((is_whole || Execution(session_->take_back_part).Run()) && Execution(session_->end_part).Run()) {
        return is_whole;
    }
    broken_from_ = depth_ - 1;
    return false;
}

// A checkpoint brings the log into the database and syncs both. While another process reads, a part of the
// log has to wait; then the log itself is what must be on the disk.
bool AccountStore::Sync() {
    const DatabaseState state = OpenSession(false);
    if (state != DatabaseState::Ready) return state == DatabaseState::Missing;
    if (!session_->connection->Execute("PRAGMA wal_checkpoint")) return false;
    const SString log = session_->path + "-wal";
    const Descriptor file = Descriptor::Open(log, O_RDONLY);
    return (!file || file.Sync()) && SyncParent(session_->path);
}

// The account is made where there is none and found where there is one. A look-up that failed must never pass
// for "there is none": somebody's account would be written over.
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

// The index has no way from an account to its addresses; the field that they came from has.
bool AccountStore::RemoveAddresses(int64_t id) {
    Execution old(session_->values, id, kAddressField);
    Step step = old.Next();
    for (; step == Step::Row; step = old.Next()) {
        const SString key = S821Address(old.Text(0)).Key();
        if (!Execution(session_->remove_address, key, id).Run()) return false;
    }
    return step == Step::Done;
}
