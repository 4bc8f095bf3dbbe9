// Implements the account store's session and its queries.
#include "support/database/account_store.h"

#include <set>

#include "support/database/account_session.h"

using sqlite::Execution;
using sqlite::Step;

AccountStore& AccountStore::Shared() {
    static AccountStore store;
    return store;
}

AccountStore::AccountStore() = default;
AccountStore::~AccountStore() = default;

AccountStore::Use::Use(AccountStore& store, EndingSignals signals) : store_(store) {
    if (store_.uses_++ == 0 && signals == EndingSignals::Blocked) block_.emplace();
}

AccountStore::Use::~Use() {
    if (--store_.uses_ == 0) store_.CloseSession();
}

// The last close removes the log, but does not tell whether the disk took it.
void AccountStore::CloseSession() {
    if (is_unsynced_ && !Checkpoint()) has_sync_failed_ = true;
    is_unsynced_ = false;
    session_.reset();
}

bool AccountStore::Checkpoint() {
    return session_ && session_->connection->Execute("PRAGMA wal_checkpoint");
}

DatabaseState AccountStore::OpenSession(bool for_writing) {
    const bool is_enough = session_ && (session_->is_writable || !for_writing);
    if (is_enough && (transaction_ || session_->IsCurrent())) return DatabaseState::Ready;
    session_.reset();
    ++epoch_;
    return Session::Open(for_writing, &session_);
}

namespace {

Lookup LookupBy(DatabaseState state) {
    return state == DatabaseState::Missing ? Lookup::Missing : Lookup::Failed;
}

Lookup LookupBy(Step step) {
    return step == Step::Row ? Lookup::Found : step == Step::Done ? Lookup::Missing : Lookup::Failed;
}

}  // namespace

Lookup AccountStore::Find(const SString& uid) {
    const Use use(*this);
    const DatabaseState state = OpenSession(false);
    return state == DatabaseState::Ready ? LookupBy(Execution(session_->find, uid).Next()) : LookupBy(state);
}

Lookup AccountStore::Read(const SString& uid, SNamedStringList* fields, bool* is_locked) {
    const Use use(*this);
    fields->Reset();
    const DatabaseState state = OpenSession(false);
    if (state != DatabaseState::Ready) return LookupBy(state);
    Execution query(session_->read, uid);
    const Step first = query.Next();
    Step step = first;
    for (; step == Step::Row; step = query.Next()) {
        *is_locked = query.Number(0) != 0;
        if (!query.IsNull(1)) (*fields)[query.Text(1)].Push(query.Text(2));
    }
    return step == Step::Failed ? Lookup::Failed : LookupBy(first);
}

Lookup AccountStore::FindOwner(const SString& address_key, SString* uid) {
    const Use use(*this);
    const DatabaseState state = OpenSession(false);
    if (state != DatabaseState::Ready) return LookupBy(state);
    Execution query(session_->find_owner, address_key);
    const Step step = query.Next();
    if (step == Step::Row) *uid = query.Text(0);
    return LookupBy(step);
}

SStringList AccountStore::Uids() {
    const Use use(*this);
    SStringList uids;
    if (OpenSession(false) != DatabaseState::Ready) return uids;
    Execution query(session_->uids);
    Step step = query.Next();
    for (; step == Step::Row; step = query.Next()) uids.Push(query.Text(0));
    return step == Step::Done ? uids : SStringList();
}

long AccountStore::Count() {
    const Use use(*this);
    if (OpenSession(false) != DatabaseState::Ready) return 0;
    Execution query(session_->count);
    return query.Next() == Step::Row ? query.Number(0) : 0;
}

std::optional<SStringList> AccountStore::Domains() {
    const Use use(*this);
    const DatabaseState state = OpenSession(false);
    if (state == DatabaseState::Missing) return SStringList();
    if (state != DatabaseState::Ready) return std::nullopt;
    std::set<std::string> domains;
    Execution query(session_->addresses);
    Step step = query.Next();
    for (; step == Step::Row; step = query.Next()) {
        const SString domain = S821Address(query.Text(0)).Domain();
        if (!domain.IsEmpty()) domains.insert(domain.Bytes());
    }
    if (step == Step::Failed) return std::nullopt;
    SStringList list;
    for (const std::string& domain : domains) list.Push(SString(domain));
    return list;
}

uint64_t AccountStore::Epoch() {
    const Use use(*this);
    if (OpenSession(false) != DatabaseState::Ready) return ++epoch_;
    Execution query(session_->version);
    if (query.Next() != Step::Row || query.Number(0) != session_->data_version) {
        ++epoch_;
        session_->data_version = query.Number(0);
    }
    return epoch_;
}
