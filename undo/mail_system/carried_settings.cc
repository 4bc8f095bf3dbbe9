// Tells what an update of a module's new version left of it, however far it came.
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/database/sqlite.h"
#include "undo/mail_system/module_database.h"

namespace {

using Address = std::pair<std::string, std::string>;  // a table's path and a key; of the table itself: ""
using Settings = std::map<Address, std::vector<std::string>>;

constexpr const char* kSettings =
    "SELECT path, '', '', 0 FROM tables "
    "UNION ALL SELECT path, '/' || key, value, position FROM settings ORDER BY 1, 2, 4";

/// Nothing if it is no database of a module's.
std::optional<Settings> SettingsIn(const SString& bytes) {
    const auto database = sqlite::Connection::OpenCopy(bytes);
    if (!database) return std::nullopt;
    Settings settings;
    sqlite::Statement statement = database->Prepare(kSettings);
    sqlite::Execution rows(statement);
    sqlite::Step step = rows.Next();
    for (; step == sqlite::Step::Row; step = rows.Next()) {
        settings[{rows.Text(0).Bytes(), rows.Text(1).Bytes()}].push_back(rows.Text(2).Bytes());
    }
    return step == sqlite::Step::Done ? std::optional(settings) : std::nullopt;
}

std::vector<std::string> ValuesAt(const Settings& settings, const Address& address) {
    const auto found = settings.find(address);
    return found == settings.end() ? std::vector<std::string>() : found->second;
}

}  // namespace

bool IsCarriedOver(const SString& bytes, const SString& delivered, const std::optional<SString>& in_use) {
    const auto now = SettingsIn(bytes);
    const auto before = SettingsIn(delivered);
    const Settings source = in_use ? SettingsIn(*in_use).value_or(Settings()) : Settings();
    if (!now || !before) return false;
    Settings all = *now;
    all.insert(before->begin(), before->end());
    for (const auto& [address, either] : all) {
        const auto values = ValuesAt(*now, address);
        const bool is_carried = source.contains({address.first, ""}) && values == ValuesAt(source, address);
        if (values != ValuesAt(*before, address) && !is_carried) return false;
    }
    return true;
}
