#include "undo/host/still_link.h"

#include "support/system/file.h"

bool ReplaceLink(const SString& path, const SString& link, const SString& other) {
    if (LinkText(path) != link || !ExchangeNames(path, other)) return false;
    if (LinkText(other) == link) return RemoveFile(other);
    ExchangeNames(path, other);
    return false;
}

bool RemoveLink(const SString& path, const SString& link, const SString& spare) {
    if (!EntryExists(path)) return true;
    if (LinkText(path) != link || !RenameNoReplace(path, spare)) return false;
    if (LinkText(spare) == link) return RemoveFile(spare);
    RenameNoReplace(spare, path);
    return false;
}
