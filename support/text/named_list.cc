// Keeps the lists in a map and the names in a list of their own, in order.
#include "support/text/named_list.h"

SStringList& SNamedStringList::operator[](const SString& name) {
    const auto [entry, is_new] = lists_.try_emplace(name);
    if (is_new) names_.Push(name);
    return entry->second;
}

SStringList SNamedStringList::Get(const SString& name) const {
    const auto entry = lists_.find(name);
    return entry == lists_.end() ? SStringList() : entry->second;
}

void SNamedStringList::Delete(const SString& name) {
    lists_.erase(name);
    names_.Delete(name);
}

void SNamedStringList::Reset() {
    lists_.clear();
    names_.Reset();
}
