// Parses one address (RFC 821 section 4.1.2). Only printable ASCII is accepted: a line end or a NUL inside
// quotes would end up in files and dialogues that are read by line.
#include "support/mail/address.h"

#include <optional>

namespace {

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7f';
}

bool IsAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

bool IsLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

/// A character of a local part that needs neither quotes nor a backslash.
bool IsPlain(char c) {
    return IsAscii(c) && !IsControl(c) &&
           std::string_view("<>()[]\\.,;:@\" ").find(c) == std::string_view::npos;
}

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// Reads a text from its beginning.
class Cursor {
  public:
    explicit Cursor(std::string_view text) : rest_(text) {}
    bool IsAtEnd() const { return rest_.empty(); }
    char Peek() const { return rest_.front(); }
    char Take() {
        const char c = rest_.front();
        rest_.remove_prefix(1);
        return c;
    }
    bool TakeIf(char c) {
        const bool is_next = rest_.starts_with(c);
        rest_.remove_prefix(is_next ? 1 : 0);
        return is_next;
    }
    std::string_view Rest() const { return rest_; }

  private:
    std::string_view rest_;
};

std::optional<char> TakePrintable(Cursor& cursor) {
    const bool is_printable = !cursor.IsAtEnd() && IsAscii(cursor.Peek()) && !IsControl(cursor.Peek());
    return is_printable ? std::optional(cursor.Take()) : std::nullopt;
}

// <quoted-string>, after its opening quote.
std::optional<std::string> QuotedWord(Cursor& cursor) {
    std::string word;
    while (!cursor.TakeIf('"')) {
        cursor.TakeIf('\\');
        const auto c = TakePrintable(cursor);
        if (!c) return std::nullopt;
        word += *c;
    }
    return word.empty() ? std::nullopt : std::optional(word);
}

// <string>: plain characters, and any character after a backslash.
std::optional<std::string> PlainWord(Cursor& cursor) {
    std::string word;
    while (!cursor.IsAtEnd() && (IsPlain(cursor.Peek()) || cursor.Peek() == '\\')) {
        const auto c = cursor.TakeIf('\\') ? TakePrintable(cursor) : std::optional(cursor.Take());
        if (!c) return std::nullopt;
        word += *c;
    }
    return word.empty() ? std::nullopt : std::optional(word);
}

// Words with dots between them, up to the "@" or the end. RFC 822 lets any of them be quoted.
std::optional<std::string> ReadLocalPart(Cursor& cursor) {
    std::string local;
    do {
        const auto word = cursor.TakeIf('"') ? QuotedWord(cursor) : PlainWord(cursor);
        if (!word) return std::nullopt;
        local += (local.empty() ? "" : ".") + *word;
    } while (cursor.TakeIf('.'));
    return local;
}

bool IsLabel(std::string_view label) {
    if (label.starts_with('#')) {  // a host by number
        return label.size() > 1 && label.find_first_not_of("0123456789", 1) == std::string_view::npos;
    }
    for (const char c : label) {
        if (!IsLetterOrDigit(c) && c != '-' && c != '_') {  // real hosts have underscores
            return false;
        }
    }
    return !label.empty() && !label.starts_with('-') && !label.ends_with('-');
}

bool IsLiteral(std::string_view domain) {
    if (domain.size() < 3 || !domain.starts_with('[') || !domain.ends_with(']')) return false;
    for (const char c : domain.substr(1, domain.size() - 2)) {
        if (!IsLetterOrDigit(c) && c != '.' && c != ':' && c != '-') return false;
    }
    return true;
}

bool IsDomain(std::string_view domain) {
    if (domain.starts_with('[')) return IsLiteral(domain);
    size_t dot = 0;
    for (; (dot = domain.find('.')) != std::string_view::npos; domain.remove_prefix(dot + 1)) {
        if (!IsLabel(domain.substr(0, dot))) return false;
    }
    return IsLabel(domain);
}

// The text without its source route "@one,@two:", which is ignored (RFC 1123 section 5.3.6); nullopt if that
// is malformed.
std::optional<std::string_view> WithoutRoute(std::string_view text) {
    if (!text.starts_with('@')) return text;
    while (text.starts_with('@')) {
        const size_t end = text.find_first_of(",:");
        if (end == std::string_view::npos || !IsDomain(text.substr(1, end - 1))) return std::nullopt;
        const bool is_last = text[end] == ':';
        text.remove_prefix(end + 1);
        if (is_last) return text;
    }
    return std::nullopt;
}

bool NeedsQuotes(std::string_view local) {
    if (local.starts_with('.') || local.ends_with('.') || local.find("..") != std::string_view::npos) {
        return true;
    }
    for (const char c : local) {
        if (!IsPlain(c) && c != '.') return true;
    }
    return false;
}

SString Quoted(const SString& local) {
    return "\"" + local.S("([\"\\\\])", "\\$1", "g") + "\"";
}

}  // namespace

S821Address& S821Address::operator=(const SString& text) {
    Parse(text);
    return *this;
}

void S821Address::Parse(const SString& text) {
    *this = S821Address();
    std::string_view path = Trimmed(text.Bytes());
    if (path.starts_with('<') && path.ends_with('>')) path = Trimmed(path.substr(1, path.size() - 2));
    const auto mailbox = WithoutRoute(path);
    if (path.empty() || !mailbox) {
        valid_ = path.empty();
        return;
    }
    Cursor cursor(*mailbox);
    const auto local = ReadLocalPart(cursor);
    const bool has_domain = cursor.TakeIf('@');
    if (local && (has_domain ? IsDomain(cursor.Rest()) : cursor.IsAtEnd())) {
        local_ = SString(*local);
        domain_ = SString(cursor.Rest());
        valid_ = true;
    }
}

SString S821Address::Address() const {
    if (!valid_ || local_.IsEmpty()) return "";
    const SString local = NeedsQuotes(local_.Bytes()) ? Quoted(local_) : local_;
    return domain_.IsEmpty() ? local : local + "@" + domain_;
}

SString S821Address::Key() const {
    return Address().LowerCase();
}
