// The only place of the record that uses the JSON library.
#include "install/record/text.h"

#include <array>
#include <charconv>
#include <concepts>
#include <nlohmann/json.hpp>
#include <utility>

#include "install/record/escapes.h"

namespace {

using Json = nlohmann::ordered_json;

template <typename Value>
concept Whole = std::integral<Value> && !std::same_as<Value, bool>;

// --- writing, without the library, whose document in between would take longer than the recorded account

class Writer {
  public:
    void operator()(const char* name, const auto& value) {
        text_ += is_first_ ? "\"" : ",\"";
        is_first_ = false;
        text_ += name;
        text_ += "\":";
        Write(value);
    }
    SString Text() && { return SString("{" + std::move(text_) + "}"); }

  private:
    /// Escaped, it has nothing else that JSON could not have.
    void Write(const SString& text) {
        if (IsPlain(text)) {
            text_ += '"';
            text_ += text.Bytes();
            text_ += '"';
            return;
        }
        const SString escaped = Escaped(text);
        text_ += '"';
        for (const char c : escaped.Bytes()) {
            if (c == '"' || c == '\\') text_ += '\\';
            text_ += c;
        }
        text_ += '"';
    }
    void Write(bool value) { text_ += value ? "true" : "false"; }
    template <Whole Number>
    void Write(const Number& number) {
        text_ += std::to_string(number);
    }
    void Write(change::Mode mode) {
        std::array<char, 16> digits{};
        snprintf(digits.data(), digits.size(), "\"%04o\"", mode.bits & 07777U);
        text_ += digits.data();
    }
    void Write(const SStringList& texts) { WriteList(texts); }
    template <typename Value>
    void Write(const std::vector<Value>& values) {
        WriteList(values);
    }
    template <typename Value>
    void Write(const Value& value) {
        const bool was_first = std::exchange(is_first_, true);
        text_ += '{';
        const_cast<Value&>(value).Fields(*this);  // which lets a reader change it
        text_ += '}';
        is_first_ = was_first;
    }
    void WriteList(const auto& values) {
        const char* separator = "[";
        for (const auto& value : values) {
            text_ += std::exchange(separator, ",");
            Write(value);
        }
        text_ += values.begin() == values.end() ? "[]" : "]";
    }

    std::string text_;
    bool is_first_ = true;
};

// --- reading

class Reader {
  public:
    explicit Reader(const Json& object) : object_(object) {}

    void operator()(const char* name, auto& value) {
        const auto found = object_.find(name);
        is_whole_ = is_whole_ && found != object_.end() && Read(*found, &value);
    }
    bool IsWhole() const { return is_whole_; }

  private:
    static bool Read(const Json& json, SString* text) {
        const auto bytes = json.is_string() ? Unescaped(json.get_ref<const std::string&>()) : std::nullopt;
        *text = bytes.value_or("");
        return bytes.has_value();
    }
    static bool Read(const Json& json, bool* value) {
        if (!json.is_boolean()) return false;
        *value = json.get<bool>();
        return true;
    }
    static bool Read(const Json& json, Whole auto* number) {
        if (json.is_number_unsigned()) return Take(json.get<uint64_t>(), number);
        return json.is_number_integer() && Take(json.get<int64_t>(), number);
    }
    template <typename Number>
    static bool Take(auto read, Number* number) {
        *number = static_cast<Number>(read);
        return std::in_range<Number>(read);
    }
    static bool Read(const Json& json, change::Mode* mode) {
        if (!json.is_string()) return false;
        const auto& digits = json.get_ref<const std::string&>();
        const char* end = digits.data() + digits.size();
        return std::from_chars(digits.data(), end, mode->bits, 8).ptr == end;
    }
    static bool Read(const Json& json, SStringList* texts) {
        return ReadList<SString>(json, [texts](const SString& text) { texts->Push(text); });
    }
    template <typename Value>
    static bool Read(const Json& json, std::vector<Value>* values) {
        return ReadList<Value>(json, [values](Value value) { values->push_back(std::move(value)); });
    }
    template <typename Value>
    static bool Read(const Json& json, Value* value) {
        Reader reader(json);
        value->Fields(reader);
        return reader.IsWhole();
    }
    template <typename Value>
    static bool ReadList(const Json& json, auto push) {
        if (!json.is_array()) return false;
        for (const Json& element : json) {
            Value value{};
            if (!Read(element, &value)) return false;
            push(std::move(value));
        }
        return true;
    }

    const Json& object_;
    bool is_whole_ = true;
};

template <typename Kind>
bool ReadKind(Reader* reader, const SString& kind, Change* change) {
    if (kind != Kind::kKind) return false;
    Kind read;
    read.Fields(*reader);
    *change = std::move(read);
    return true;
}

template <typename... Kinds>
bool ReadChange(Reader* reader, const SString& kind, std::variant<Kinds...>* change) {
    return (ReadKind<Kinds>(reader, kind, change) || ...) && reader->IsWhole();
}

SString WithoutLineEnd(const SString& line) {
    return line.EndsWith("\n") ? SString(line).Chop() : line;
}

}  // namespace

SString LineOf(const TimedChange& timed) {
    return LineOf(timed.time, timed.change);
}

SString LineOf(const SString& time, const Change& change) {
    Writer writer;
    writer("time", time);
    const auto write = [&writer]<typename Kind>(const Kind& of_kind) {
        writer("kind", SString(Kind::kKind));
        const_cast<Kind&>(of_kind).Fields(writer);
    };
    std::visit(write, change);
    return std::move(writer).Text() + '\n';
}

std::optional<TimedChange> ChangeFrom(const SString& line) {
    const Json json = Json::parse(line.Bytes(), nullptr, false);
    Reader reader(json);
    TimedChange timed;
    SString kind;
    reader("time", timed.time);
    reader("kind", kind);
    if (!ReadChange(&reader, kind, &timed.change)) return std::nullopt;
    // Anything more than its fields, or a field twice, is lost in reading.
    if (LineOf(timed) != WithoutLineEnd(line) + '\n') return std::nullopt;
    return timed;
}

SString FormatLine() {
    return "{\"format\":1}\n";
}
