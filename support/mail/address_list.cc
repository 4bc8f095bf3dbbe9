// Splits an address list (RFC 822 section 6), such as
// "Joe <joe@example.com>, friends: ann@example.com, bob@example.com (Bob);".
#include <algorithm>

#include "support/mail/address.h"

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool JoinsWords(char c) {
    return c == '.' || c == '@' || c == ',' || c == ':' || c == '<' || c == '>';
}

std::string Trimmed(const std::string& text) {
    constexpr const char* kBlanks = " \t\r\n";
    const size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

class Splitter {
  public:
    explicit Splitter(const std::string& list) : list_(list) {}

    SStringList Addresses() {
        while (at_ < list_.size()) TakeToken(list_[at_]);
        FinishPiece();
        return addresses_;
    }

  private:
    void TakeToken(char c) {
        if (IsBlank(c) || c == '(') {
            is_after_blank_ = true;
            at_ = c == '(' ? EndOfComment() : at_ + 1;
        } else if (!is_in_brackets_ && (c == ',' || c == ';')) {
            FinishPiece();
        } else if (!is_in_brackets_ && c == ':' && !text_.starts_with('@')) {
            StartPiece();  // what came before was a group's name
        } else {
            AddToken(c);
        }
    }

    void AddToken(char c) {
        if (c == '<' && !has_brackets_) {
            text_.clear();  // what came before was a display name
            has_brackets_ = true;
        }
        is_in_brackets_ = c == '<' || (is_in_brackets_ && c != '>');
        const bool stands_apart =
            is_after_blank_ && !text_.empty() && !JoinsWords(c) && !JoinsWords(text_.back());
        text_ += stands_apart ? " " : "";
        is_after_blank_ = false;
        const size_t end = EndOfToken(c);
        text_.append(list_, at_, end - at_);
        at_ = end;
    }

    size_t EndOfToken(char c) const {
        switch (c) {
            case '"':
                return EndOfEnclosed('"');
            case '[':
                return EndOfEnclosed(']');
            case '\\':
                return std::min(at_ + 2, list_.size());
            default:
                return at_ + 1;
        }
    }

    size_t EndOfEnclosed(char closing) const {
        size_t end = at_ + 1;
        while (end < list_.size() && list_[end] != closing) end += list_[end] == '\\' ? 2 : 1;
        return std::min(end + 1, list_.size());
    }

    // Comments nest.
    size_t EndOfComment() const {
        size_t end = at_;
        int depth = 0;
        do {
            const char c = list_[end];
            depth += c == '(' ? 1 : c == ')' ? -1 : 0;
            end += c == '\\' ? 2 : 1;
        } while (depth > 0 && end < list_.size());
        return std::min(end, list_.size());
    }

    void StartPiece() {
        at_ = std::min(at_ + 1, list_.size());
        piece_begin_ = at_;
        text_.clear();
        has_brackets_ = is_in_brackets_ = is_after_blank_ = false;
    }

    void FinishPiece() {
        const std::string typed = Trimmed(list_.substr(piece_begin_, at_ - piece_begin_));
        const S821Address address{SString(text_)};
        if (!typed.empty() && text_.empty()) {
            addresses_.Push(SString(typed));  // a comment alone
        } else if (!typed.empty()) {
            addresses_.Push(address.IsNull() ? SString("<>") : address.IsValid() ? address.Address() : typed);
        }
        StartPiece();
    }

    const std::string& list_;
    size_t at_ = 0;
    size_t piece_begin_ = 0;
    std::string text_;  // the piece without comments and meaningless blanks
    bool has_brackets_ = false;
    bool is_in_brackets_ = false;
    bool is_after_blank_ = false;
    SStringList addresses_;
};

}  // namespace

S822Parser::S822Parser(const SString& list) : addresses_(Splitter(list.Bytes()).Addresses()) {}
