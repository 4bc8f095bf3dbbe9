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

Finding Compare(const SettingChanged& change, const SStringList& now) {
    if (now == change.before) return {};
    if (now == change.after) {
        return {Standing::AsLeft, "Set " + What(change) + " back to " + Shown(change.before)};
    }
    return {Standing::Changed,
            What(change) + " is " + Shown(now) + " by now; before Install it was " + Shown(change.before)};
}

/// Another process may be about to store something else there: `found`, with Differs.
Sdbfile::Outcome SetBack(const SettingChanged& change, SStringList* found) {
    Sdbfile file(SiteDatabase(change.database), 0);
    if (file.Open(change.table, 0) == 0 || file.Open(change.table, 1) == 0) return Sdbfile::Outcome::Failed;
    return file.SetIf(change.key, change.after, change.before, found);
}

/// It was as the run left it when Undo said that it would be set back.
TakenBack NotSetBack(const Finding& finding) {
    return finding.standing == Standing::AsBefore ? TakenBack() : TakenBack{false, finding.text};
}

}  // namespace

Finding LookAt(const SettingChanged& change, const UndoneRun& /*run*/) {
    if (SiteDatabase(change.database).IsEmpty()) return {Standing::Unknown, OfAnotherSite(change.database)};
    const auto now = Now(change);
    if (!now) return {Standing::Unknown, Printable(change.database) + " cannot be read"};
    return Compare(change, *now);
}

TakenBack TakeBack(const SettingChanged& change, const UndoneRun& run) {
    const Finding finding = LookAt(change, run);
    if (finding.standing != Standing::AsLeft) return NotSetBack(finding);
    SStringList found;
    const Sdbfile::Outcome outcome = SetBack(change, &found);
    if (outcome == Sdbfile::Outcome::Set) return {};
    if (outcome == Sdbfile::Outcome::Differs) return NotSetBack(Compare(change, found));
    return {false, What(change) + " could not be set back to " + Shown(change.before)};
}
