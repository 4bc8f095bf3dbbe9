#include "support/text/pattern.h"

#include <list>
#include <string>
#include <unordered_map>

#include "support/text/pattern_program.h"

namespace {

constexpr size_t kCacheSize = 128;
constexpr size_t kShortText = 256;
constexpr size_t kLeastWork = 16UL * 1024 * 1024;
constexpr size_t kWorkPerCharacter = 16;

}  // namespace

Pattern::Work::Work(const SString& subject) : left(kLeastWork + kWorkPerCharacter * subject.Length()) {}

struct Pattern::Compiled {
    explicit Compiled(const SString& text) : expression(text) {}

    const PatternProgram& For(const SString& subject) {
        const bool is_short = subject.Length() <= kShortText;
        auto& program = is_short ? plain : counted;
        if (!program) {
            using Kind = PatternProgram::Kind;
            program.emplace(expression, is_short ? Kind::kShortTexts : Kind::kCounted);
        }
        return *program;
    }

    SString expression;
    std::optional<PatternProgram> plain;
    std::optional<PatternProgram> counted;
};

/// The expressions used last, the latest first.
class Pattern::Cache {
  public:
    const Pattern& Get(const SString& expression) {
        const auto known = index_.find(expression.Bytes());
        if (known == index_.end()) return Add(expression);
        patterns_.splice(patterns_.begin(), patterns_, known->second);
        return *patterns_.front();
    }

  private:
    const Pattern& Add(const SString& expression) {
        if (patterns_.size() == kCacheSize) DropOldest();
        patterns_.push_front(std::unique_ptr<Pattern>(new Pattern(expression)));
        index_.emplace(patterns_.front()->compiled_->expression.Bytes(), patterns_.begin());
        return *patterns_.front();
    }

    void DropOldest() {
        index_.erase(patterns_.back()->compiled_->expression.Bytes());
        patterns_.pop_back();
    }

    std::list<std::unique_ptr<Pattern>> patterns_;
    std::unordered_map<std::string_view, std::list<std::unique_ptr<Pattern>>::iterator> index_;
};

Pattern::Pattern(const SString& expression) : compiled_(std::make_unique<Compiled>(expression)) {}
Pattern::~Pattern() = default;

const Pattern& Pattern::Of(const SString& expression) {
    static Cache cache;
    return cache.Get(expression);
}

bool Pattern::IsValid() const {
    return compiled_->For("").IsValid();
}

std::optional<Pattern::Match> Pattern::Find(const SString& subject, size_t from) const {
    Work work(subject);
    return Find(subject, from, &work);
}

std::optional<Pattern::Match> Pattern::Find(const SString& subject, size_t from, Work* work) const {
    return compiled_->For(subject).Run(subject, from, work);
}
