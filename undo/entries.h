// A run's changes as Undo goes through them.
#pragma once

#include "install/record/text.h"
#include "undo/ways.h"

/// A change, or many logins' changes of one kind: recorded as they came, taken back together.
struct Entry {
    size_t line = 0;  // of the record, the first of several
    SString time;
    std::variant<Change, MaildropsGiven> change;
};

std::vector<Entry> EntriesOf(const std::vector<TimedChange>& changes);

/// In plain words, one line, as it was done: "Made the directory /srv/mailboxes".
SString InWords(const Entry& entry);

/// By the way back of its kind. What is said holds no control characters.
Finding LookAt(const Entry& entry, const UndoneRun& run);
TakenBack TakeBack(const Entry& entry, const UndoneRun& run);
/// Which kind it is, as a number.
size_t KindOf(const Entry& entry);
