#include "undo/entries.h"

#include "support/text/printable.h"

namespace {

constexpr size_t kFormatLines = 1;

/// Where the last entries are of visits: the notices of many homes, and their maildrops.
class Visits {
  public:
    /// Whether the change was put to others of its kind.
    bool Take(const Change& change, std::vector<Entry>* entries) {
        if (const auto* maildrop = std::get_if<change::MaildropGiven>(&change))
            return Take(*maildrop, entries);
        if (const auto* notices = std::get_if<change::NoticesLeft>(&change)) return Take(*notices, entries);
        maildrops_.reset();
        notices_.reset();
        return false;
    }

  private:
    bool Take(const change::MaildropGiven& maildrop, std::vector<Entry>* entries) {
        if (maildrops_) {
            std::get<MaildropsGiven>((*entries)[*maildrops_].change).push_back(maildrop);
            return true;
        }
        maildrops_ = entries->size();
        return false;
    }

    bool Take(const change::NoticesLeft& notices, std::vector<Entry>* entries) {
        if (notices_) {
            auto& first = std::get<change::NoticesLeft>(std::get<Change>((*entries)[*notices_].change));
            if (first.host == notices.host) {
                first.homes.insert(first.homes.end(), notices.homes.begin(), notices.homes.end());
                return true;
            }
        }
        notices_ = entries->size();
        return false;
    }

    std::optional<size_t> maildrops_;  // their entry
    std::optional<size_t> notices_;
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

struct Take {
    const UndoneRun& run;

    TakenBack operator()(const auto& change) const { return TakeBack(change, run); }
    TakenBack operator()(const change::MaildropGiven& /*change*/) const { return {}; }
    TakenBack operator()(const change::RunEnded& /*change*/) const { return {}; }
};

}  // namespace

std::vector<Entry> EntriesOf(const std::vector<TimedChange>& changes) {
    std::vector<Entry> entries;
    Visits visits;
    size_t line = kFormatLines;
    for (const TimedChange& timed : changes) {
        ++line;
        if (!visits.Take(timed.change, &entries))
            entries.push_back({line, timed.time, EntryOf(timed.change)});
    }
    return entries;
}

Finding LookAt(const Entry& entry, const UndoneRun& run) {
    Finding finding = With(entry, Look{run});
    finding.text = Printable(finding.text);
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
