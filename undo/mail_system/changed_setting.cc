// A setting that the run stored.
#include "support/database/sdbfile.h"
#include "support/text/printable.h"
#include "undo/mail_system/site_database.h"
#include "undo/ways.h"

namespace {

using change::SettingChanged;

SString What(const SettingChanged& change) {
    return "\"" + Printable(change.key) + "\" of " + Printable(change.table) + " in " +
           Printable(change.database);
}

SString Shown(const SStringList& values) {
    constexpr size_t kMost = 200;
    if (values.IsEmpty()) return "nothing";
    const SString text = Printable(values.Join(", "));
    return "\"" + (text.Length() <= kMost ? text : SString(text.Bytes().substr(0, kMost)) + "...") + "\"";
}

/// The values now; nothing if they cannot be read.
std::optional<SStringList> Now(const SettingChanged& change) {
    Sdbfile file(SiteDatabase(change.database), 0);
    SStringList values;
    if (file.Open(change.table, 0) == 0) return file.IsMissing() ? std::optional(values) : std::nullopt;
    return file.Read(change.key, &values) ? std::optional(values) : std::nullopt;
}

bool Store(const SettingChanged& change) {
    Sdbfile file(SiteDatabase(change.database), 0);
    return file.Open(change.table, 0) != 0 && file.Open(change.table, 1) != 0 &&
           file.Set(change.key, change.before) != 0;
}

}  // namespace

Finding LookAt(const SettingChanged& change, const UndoneRun& /*run*/) {
    if (SiteDatabase(change.database).IsEmpty()) return {Standing::Unknown, OfAnotherSite(change.database)};
    const auto now = Now(change);
    if (!now) return {Standing::Unknown, Printable(change.database) + " cannot be read"};
    if (*now == change.before) return {};
    if (*now == change.after) {
        return {Standing::AsLeft, "Set " + What(change) + " back to " + Shown(change.before)};
    }
    return {Standing::Changed,
            What(change) + " is " + Shown(*now) + " by now; before Install it was " + Shown(change.before)};
}

TakenBack TakeBack(const SettingChanged& change, const UndoneRun& run) {
    const Finding finding = LookAt(change, run);
    if (finding.standing == Standing::AsBefore) return {};
    if (finding.standing != Standing::AsLeft) return {finding.standing != Standing::Unknown, finding.text};
    if (Store(change)) return {};
    return {false, What(change) + " could not be set back to " + Shown(change.before)};
}
