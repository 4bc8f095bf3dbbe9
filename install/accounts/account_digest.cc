#include "install/accounts/account_digest.h"

#include <map>

#include "install/record/record.h"

namespace {

using Fields = std::map<std::string, SStringList>;

void Add(const SString& text, std::string* all) {
    *all += std::to_string(text.Length()) + ":" + text.Bytes();
}

/// Each text with its length, and each list with its count: no two accounts look the same.
SString Digest(const SString& key, const Fields& fields, bool is_locked) {
    std::string all = is_locked ? "locked\n" : "open\n";
    for (const auto& [name, values] : fields) {
        if (values.IsEmpty()) continue;
        Add(SString(name), &all);
        all += std::to_string(values.Count()) + ";";
        for (const SString& value : values) Add(value, &all);
    }
    return KeyedChecksum(key, SString(std::move(all)));
}

void Put(const AccountFields& changed, Fields* fields) {
    for (const AccountField& field : changed) (*fields)[field.name] = field.values;
}

}  // namespace

SString AccountDigest(const SString& key, const AccountFields& fields, AccountLock lock) {
    Fields all;
    Put(fields, &all);
    return Digest(key, all, lock == AccountLock::Locked);
}

SString AccountDigest(const SString& key, const SAccount& account, const AccountFields& changed) {
    Fields all;
    for (const SString& name : account.Fields()) all[name.Bytes()] = account.Get(name);
    Put(changed, &all);
    return Digest(key, all, account.IsLocked());
}

void RecordEdit(const SString& uid, const AccountFields& changed) {
    SAccount account;
    if (!IsRecording() || SAccountDB().Find(uid, &account) != Lookup::Found) return;
    change::AccountEdited edit{{uid, AccountDigest(RecordKey(), account, changed)}, {}};
    for (const AccountField& field : changed) edit.fields.Push(field.name);
    RecordChange(edit);
}
