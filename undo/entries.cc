#include "undo/entries.h"

#include <cstdint>

#include "support/text/printable.h"
#include "undo/later_runs.h"

namespace {

constexpr size_t kFormatLines = 1;

/// Adds a change to those of its kind; false if it cannot be taken back together with them.
bool Join(const change::MaildropGiven& maildrop, Entry* entry) {
    std::get<MaildropsGiven>(entry->change).push_back(maildrop);
    return true;
}

bool Join(const change::NoticesLeft& notices, Entry* entry) {
    auto& first = std::get<change::NoticesLeft>(std::get<Change>(entry->change));
    if (first.host != notices.host) return false;
    first.homes.insert(first.homes.end(), notices.homes.begin(), notices.homes.end());
    return true;
}

bool Join(const change::AccountsMade& made, Entry* entry) {
    auto& first = std::get<change::AccountsMade>(std::get<Change>(entry->change));
    first.accounts.insert(first.accounts.end(), made.accounts.begin(), made.accounts.end());
    return true;
}

/// What a run does for one login after the other: each kind goes together, as none depends on another
/// login's.
class Logins {
  public:
    explicit Logins(std::vector<Entry>* entries) : entries_(entries) {}

    /// Whether the change was put to others of its kind.
    bool Take(const Change& change) {
        if (const auto* maildrop = std::get_if<change::MaildropGiven>(&change))
            return Put(*maildrop, &maildrops_);
        if (const auto* notices = std::get_if<change::NoticesLeft>(&change)) return Put(*notices, &notices_);
        if (const auto* accounts = std::get_if<change::AccountsMade>(&change))
            return Put(*accounts, &accounts_);
        maildrops_ = notices_ = accounts_ = kNone;
        return false;
    }

  private:
    static constexpr size_t kNone = SIZE_MAX;

    /// Otherwise it will be the next entry.
    template <typename Kind>
    bool Put(const Kind& change, size_t* place) {
        if (*place != kNone && Join(change, &(*entries_)[*place])) return true;
        *place = entries_->size();
        return false;
    }

    std::vector<Entry>* entries_;
    size_t maildrops_ = kNone;  // their entries
    size_t notices_ = kNone;
    size_t accounts_ = kNone;
};

std::variant<Change, MaildropsGiven> EntryOf(const Change& change) {
    if (const auto* maildrop = std::get_if<change::MaildropGiven>(&change)) return MaildropsGiven{*maildrop};
    return change;
}

/// Calls the work with the change of the entry's kind.
template <typename Work>
auto With(const Entry& entry, const Work& work) {
    if (const auto* maildrops = std::get_if<MaildropsGiven>(&entry.change)) return work(*maildrops);
    return std::visit(work, std::get<Change>(entry.change));
}

struct Look {
    const UndoneRun& run;

    Finding operator()(const auto& change) const { return LookAt(change, run); }
    /// Neither stands in an entry.
    Finding operator()(const change::MaildropGiven& /*change*/) const { return {}; }
    Finding operator()(const change::RunEnded& /*change*/) const { return {}; }
};

/// What a later run has changed again is no longer as this one left it, or only looks so. What is as before
/// by now is not that run's to be taken back first.
Finding UnlessLater(Finding finding, const Entry& entry, const UndoneRun& run) {
    const auto* change = std::get_if<Change>(&entry.change);
    const bool is_changed = finding.standing == Standing::Changed;
    const bool may_be_later = is_changed || finding.standing == Standing::AsLeft;
    if (run.later == nullptr || change == nullptr || !may_be_later) return finding;
    const SString text = run.later->ChangedAgain(*change);
    if (text.IsEmpty()) return finding;
    return {Standing::Later, is_changed ? finding.text + "; " + text : text};
}

struct Take {
    const UndoneRun& run;

    TakenBack operator()(const auto& change) const { return TakeBack(change, run); }
    TakenBack operator()(const change::MaildropGiven& /*change*/) const { return {}; }
    TakenBack operator()(const change::RunEnded& /*change*/) const { return {}; }
};

}  // namespace

std::vector<Entry> EntriesOf(const std::vector<TimedChange>& changes) {
    std::vector<Entry> entries;
    Logins logins(&entries);
    size_t line = kFormatLines;
    for (const TimedChange& timed : changes) {
        ++line;
        if (!logins.Take(timed.change)) entries.push_back({line, timed.time, EntryOf(timed.change)});
    }
    return entries;
}

Finding LookAt(const Entry& entry, const UndoneRun& run) {
    Finding finding = UnlessLater(With(entry, Look{run}), entry, run);
    finding.text = Printable(finding.text);
    for (SString& line : finding.by_hand) line = Printable(line);
    return finding;
}

TakenBack TakeBack(const Entry& entry, const UndoneRun& run) {
    TakenBack taken = With(entry, Take{run});
    for (SString& text : taken.left) text = Printable(text);
    return taken;
}

size_t KindOf(const Entry& entry) {
    const auto* change = std::get_if<Change>(&entry.change);
    return change == nullptr ? std::variant_size_v<Change> : change->index();
}
