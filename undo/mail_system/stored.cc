#include "undo/mail_system/stored.h"

#include <algorithm>

#include "undo/entries.h"
#include "undo/mail_system/site_database.h"

namespace {

/// Its database; empty for changes of other kinds.
SString StoredIn(const Change& change, Stored what) {
    if (const auto* setting = std::get_if<change::SettingChanged>(&change))
        return SiteDatabase(setting->database);
    const auto* made = std::get_if<change::DatabaseMade>(&change);
    const bool is_table = made != nullptr && !made->table.IsEmpty();
    return is_table && what == Stored::SettingsAndTables ? SiteDatabase(made->file) : SString();
}

}  // namespace

bool IsMoreStoredIn(const SString& database, Stored what, const UndoneRun& run) {
    if (run.entries == nullptr) return false;
    return std::ranges::any_of(*run.entries, [&](const Entry& entry) {
        const auto* change = std::get_if<Change>(&entry.change);
        const bool is_there = change != nullptr && StoredIn(*change, what) == database;
        return is_there && LookAt(entry, run).standing == Standing::AsLeft;
    });
}
