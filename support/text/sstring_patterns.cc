// Implements SString's operations that take a pattern or a separator.
#include "support/text/pattern.h"
#include "support/text/pattern_expression.h"
#include "support/text/sstring_list.h"

namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

SString Piece(const SString& text, size_t begin, size_t end) {
    return std::string_view(text.Bytes()).substr(begin, end - begin);
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Reads the number after a "$", at most two digits; 0 if there is none.
size_t GroupNumber(std::string_view text, size_t* at) {
    size_t number = 0;
    for (size_t digits = 0; digits < 2 && *at < text.size() && IsDigit(text[*at]); digits++, (*at)++) {
        if (digits == 0 && text[*at] == '0') break;
        number = number * 10 + static_cast<size_t>(text[*at] - '0');
    }
    return number;
}

/// In one pass: a "$1" in a group's text must not be expanded.
std::string Expand(const SString& replacement, const SString& subject, const Pattern::Match& match) {
    const std::string_view text = replacement.Bytes();
    std::string result;
    for (size_t at = 0; at < text.size();) {
        const char c = text[at++];
        const size_t group = c == '$' ? GroupNumber(text, &at) : 0;
        if (group == 0) {
            result += c;
        } else if (group < match.size()) {
            result.append(subject.Bytes(), match[group].begin, match[group].end - match[group].begin);
        }
    }
    return result;
}

/// The next match that ends a field: not an empty one at the field's start or at the end of the text.
std::optional<Pattern::Match> NextSeparator(const Pattern& pattern, std::string_view text, size_t field,
                                            Pattern::Work* work) {
    auto match = pattern.Find(text, field, work);
    if (match && match->front().end == field) match = pattern.Find(text, field + 1, work);
    const bool is_empty = match && match->front().begin == match->front().end;
    if (is_empty && match->front().begin == text.size()) return std::nullopt;
    return match;
}

bool IsFull(const SStringList& fields, int limit) {
    return limit > 0 && fields.Count() + 1 >= static_cast<size_t>(limit);
}

void DropTrailingEmpty(SStringList* fields) {
    while (!fields->IsEmpty() && (*fields)[fields->Count() - 1].IsEmpty()) fields->Pop();
}

SStringList Words(const SString& text, int limit) {
    const std::string_view bytes = text.Bytes();
    SStringList words;
    for (size_t begin = bytes.find_first_not_of(kWhiteSpace); begin != std::string_view::npos;) {
        size_t end = IsFull(words, limit) ? bytes.size() : bytes.find_first_of(kWhiteSpace, begin);
        if (end == std::string_view::npos) end = bytes.size();
        words.Push(Piece(text, begin, end));
        begin = bytes.find_first_not_of(kWhiteSpace, end);
    }
    return words;
}

}  // namespace

SStringList SString::M(const SString& pattern) const {
    SStringList groups;
    const auto match = Pattern(WithoutSlashes(pattern.bytes_)).Find(bytes_);
    if (!match) return groups;
    for (size_t i = 1; i < match->size(); i++) groups.Push(Piece(*this, (*match)[i].begin, (*match)[i].end));
    return groups;
}

bool SString::Matches(const SString& pattern) const {
    return Pattern(WithoutSlashes(pattern.bytes_)).Find(bytes_).has_value();
}

SString SString::S(const SString& pattern, const SString& replacement, const SString& flags) const {
    const Pattern compiled(pattern.bytes_);
    const bool every = flags.Index('g') >= 0;
    Pattern::Work work(bytes_);
    std::string result;
    size_t kept = 0;
    for (auto match = compiled.Find(bytes_, 0, &work); match;) {
        const auto [begin, end, took_part] = match->front();
        result.append(bytes_, kept, begin - kept);
        result += Expand(replacement, *this, *match);
        kept = end;
        if (!every) break;
        // An empty match would be found again and again.
        match = compiled.Find(bytes_, begin == end ? end + 1 : end, &work);
    }
    return result.append(bytes_, kept);
}

SStringList SString::Split(char separator, int limit) const {
    if (separator == ' ') return Words(*this, limit);
    SStringList fields = SplitExact(SString(separator, 1), limit);
    DropTrailingEmpty(&fields);
    return fields;
}

SStringList SString::Split(const SString& pattern, int limit) const {
    const Pattern compiled(pattern.bytes_);
    Pattern::Work work(bytes_);
    SStringList fields;
    size_t field = 0;
    while (!IsFull(fields, limit)) {
        const auto separator = NextSeparator(compiled, bytes_, field, &work);
        if (!separator) break;
        fields.Push(Piece(*this, field, separator->front().begin));
        field = separator->front().end;
    }
    fields.Push(Piece(*this, field, Length()));
    DropTrailingEmpty(&fields);
    return fields;
}

SStringList SString::SplitExact(const SString& separator, int limit) const {
    SStringList fields;
    if (IsEmpty()) return fields;
    size_t field = 0;
    while (!separator.IsEmpty() && !IsFull(fields, limit)) {
        const size_t end = bytes_.find(separator.bytes_, field);
        if (end == std::string::npos) break;
        fields.Push(Piece(*this, field, end));
        field = end + separator.Length();
    }
    fields.Push(Piece(*this, field, Length()));
    return fields;
}
