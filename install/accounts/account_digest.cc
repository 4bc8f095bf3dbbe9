#include "install/accounts/account_digest.h"

#include <algorithm>
#include <map>
#include <utility>

#include "install/record/record.h"

namespace {

struct Field {
    std::string_view name;
    const SStringList* values;
};

void Add(std::string_view text, std::string* all) {
    *all += std::to_string(text.size());
    *all += ':';
    *all += text;
}

/// Each text with its length, and each list with its count: no two accounts look the same.
SString Digest(const SString& key, std::vector<Field> fields, bool is_locked) {
    std::ranges::sort(fields, {}, &Field::name);
    std::string all = is_locked ? "locked\n" : "open\n";
    for (const auto& [name, values] : fields) {
        if (values->IsEmpty()) continue;
        Add(name, &all);
        all += std::to_string(values->Count()) + ";";
        for (const SString& value : *values) Add(value.Bytes(), &all);
    }
    return KeyedChecksum(key, SString(std::move(all)));
}

}  // namespace

SString AccountDigest(const SString& key, const AccountFields& fields, AccountLock lock) {
    std::vector<Field> all;
    for (const AccountField& field : fields) all.push_back({field.name, &field.values});
    return Digest(key, std::move(all), lock == AccountLock::Locked);
}

SString AccountDigest(const SString& key, const SAccount& account, const AccountFields& changed) {
    std::map<std::string, SStringList> fields;
    for (const SString& name : account.Fields()) fields[name.Bytes()] = account.Get(name);
    for (const AccountField& field : changed) fields[field.name] = field.values;
    std::vector<Field> all;
    all.reserve(fields.size());
    for (const auto& [name, values] : fields) all.push_back({name, &values});
    return Digest(key, std::move(all), account.IsLocked());
}

void RecordEdit(const SString& uid, const AccountFields& changed) {
    SAccount account;
    if (!IsRecording()) return;
    const Lookup found = SAccountDB().Find(uid, &account);
    if (found == Lookup::Failed) StopRecording();
    if (found != Lookup::Found) return;  // no account is made by an edit
    change::AccountEdited edit{{uid, AccountDigest(RecordKey(), account, changed)}, {}};
    for (const AccountField& field : changed) edit.fields.Push(field.name);
    RecordChange(edit);
}
