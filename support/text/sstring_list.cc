// Implements the list operations.
#include "support/text/sstring_list.h"

#include <algorithm>
#include <istream>

#include "support/text/pattern.h"
#include "support/text/pattern_expression.h"

SStringList::SStringList(const char* const* null_terminated) {
    for (; null_terminated != nullptr && *null_terminated != nullptr; null_terminated++)
        Push(*null_terminated);
}

void SStringList::Push(const SStringList& items) {
    // Counts first: the list may be pushed onto itself.
    const size_t count = items.Count();
    for (size_t i = 0; i < count; i++) items_.push_back(items.items_[i]);
}

SString SStringList::Pop() {
    if (items_.empty()) return {};
    SString last = std::move(items_.back());
    items_.pop_back();
    return last;
}

SString SStringList::Shift() {
    if (items_.empty()) return {};
    SString first = std::move(items_.front());
    items_.pop_front();
    return first;
}

void SStringList::Insert(const SStringList& items, int at) {
    const std::vector<SString> copies(items.begin(), items.end());  // it may be this very list
    const long place = std::clamp(static_cast<long>(at), 0L, static_cast<long>(Count()));
    items_.insert(items_.begin() + place, copies.begin(), copies.end());
}

void SStringList::Splice(int at, int count) {
    const long size = static_cast<long>(Count());
    const long first = std::clamp(static_cast<long>(at), 0L, size);
    const long last = std::clamp(first + count, first, size);
    items_.erase(items_.begin() + first, items_.begin() + last);
}

SString SStringList::Get(int i) const {
    const bool is_inside = i >= 0 && static_cast<size_t>(i) < Count();
    return is_inside ? items_[static_cast<size_t>(i)] : SString();
}

bool SStringList::Contains(const SString& item) const {
    return std::find(items_.begin(), items_.end(), item) != items_.end();
}

void SStringList::Delete(const SString& item) {
    // Compares with a copy: the item may be an element, which moves.
    std::erase_if(items_, [copy = item](const SString& element) { return element == copy; });
}

SStringList SStringList::Grep(const SString& expression, SStringList* /*unused*/) {
    using Form = PatternExpression::Form;
    SStringList chosen;
    const auto parsed = ParsePatternExpression(expression.Bytes());
    if (!parsed) return chosen;
    const Pattern pattern(parsed->pattern);
    for (SString& item : items_) {
        const bool matches = pattern.Find(item.Bytes()).has_value();
        if (matches == (parsed->form == Form::Reject)) continue;
        if (parsed->form == Form::Substitute) item = item.S(parsed->pattern, parsed->replacement);
        chosen.Push(item);
    }
    return chosen;
}

SString SStringList::Join(const SString& separator) const {
    SString joined;
    for (size_t i = 0; i < Count(); i++) {
        if (i > 0) joined += separator;
        joined += items_[i];
    }
    return joined;
}

void SStringList::Sort() {
    std::sort(items_.begin(), items_.end());
}

void SStringList::Unique() {
    items_.erase(std::unique(items_.begin(), items_.end()), items_.end());
}

void SStringList::Chop() {
    for (SString& item : items_) item.Chop();
}

std::vector<char*> SStringList::Pointers() {
    std::vector<char*> pointers;
    pointers.reserve(items_.size() + 1);
    for (const SString& item : items_) {
        pointers.push_back(const_cast<char*>(item.CString()));  // execv's signature is older than const
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::istream& operator>>(std::istream& in, SStringList& lines) {
    lines.Reset();
    for (SString line; in >> line;) lines.Push(line);
    return in;
}

SStringList LowerCase(SStringList items) {
    for (SString& item : items) item.LowerCase();
    return items;
}

SStringList Lines(const SString& text) {
    SStringList lines;
    std::string_view rest = text.Bytes();
    while (!rest.empty()) {
        const size_t length = std::min(rest.find('\n'), rest.size() - 1) + 1;
        lines.Push(SString(rest.substr(0, length)));
        rest.remove_prefix(length);
    }
    return lines;
}
