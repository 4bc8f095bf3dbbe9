// Formats and parses the text form of named fields.
#include "support/mail/field_text.h"

#include <algorithm>

namespace {

constexpr char kFold = '\t';

bool IsValue(std::string_view text) {
    return text.find_first_of(std::string_view("\0\r\n", 3)) == text.npos;
}

/// Visible characters, then the only colon.
bool IsName(std::string_view text) {
    return text.size() > 1 && text.find(':') == text.size() - 1 &&
           std::all_of(text.begin(), text.end(), [](unsigned char c) { return c > ' ' && c != 0x7f; });
}

/// Takes the next line off the text, without its line end. Nullopt if there is no line end.
std::optional<std::string_view> TakeLine(std::string_view* text) {
    size_t end = text->find('\n');
    if (end == text->npos) return std::nullopt;
    std::string_view line = text->substr(0, end);
    text->remove_prefix(end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

/// Returns the new field's values, or null unless the line is "Name:" or "Name: value".
SStringList* AddField(std::string_view line, SNamedStringList* fields) {
    size_t length = line.find(':') + 1;  // 0 without a colon
    std::string_view name = line.substr(0, length);
    std::string_view rest = line.substr(length);
    if (!IsName(name) || (!rest.empty() && rest[0] != ' ')) return nullptr;
    SStringList* values = &(*fields)[SString(name)];
    if (!rest.empty()) values->Push(SString(rest.substr(1)));
    return values;
}

}  // namespace

std::optional<SString> FieldText(const SNamedStringList& fields, const SString& line_end) {
    SString text;
    for (const SString& name : fields.Keys()) {
        if (!IsName(name.Bytes())) return std::nullopt;
        text += name;
        SStringList values = fields.Get(name);
        for (size_t i = 0; i < values.Count(); ++i) {
            if (!IsValue(values[i].Bytes())) return std::nullopt;
            text += i == 0 ? SString(" ") : line_end + kFold;
            text += values[i];
        }
        text += line_end;
    }
    return text;
}

std::optional<SNamedStringList> ParseFieldText(const SString& text) {
    SNamedStringList fields;
    SStringList* values = nullptr;
    size_t names = 0;
    std::string_view rest = text.Bytes();
    while (!rest.empty()) {
        auto line = TakeLine(&rest);
        if (!line || !IsValue(*line)) return std::nullopt;
        if (line->starts_with(kFold) && values != nullptr && !values->IsEmpty()) {
            values->Push(SString(line->substr(1)));
        } else {
            values = AddField(*line, &fields);
            if (values == nullptr) return std::nullopt;
            ++names;
        }
    }
    if (names != fields.Keys().Count()) return std::nullopt;  // a name occurs twice
    return fields;
}
