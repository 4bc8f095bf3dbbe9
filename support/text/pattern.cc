// Compiles and runs expressions with PCRE2, and bounds the work of a match.
#include "support/text/pattern.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <cstdint>
#include <functional>
#include <map>
#include <new>
#include <string>

namespace {

constexpr size_t kCacheSize = 128;
constexpr size_t kLongestExpression = 65536;
constexpr size_t kLeastWork = 16UL * 1024 * 1024;
constexpr size_t kWorkPerCharacter = 16;
// PCRE2's own limit starts anew at each starting point, so it can bound only short texts, but those sooner.
constexpr size_t kShortText = 256;
constexpr uint32_t kShortTextMatchLimit = 1000000;
constexpr uint32_t kHeapLimitKiB = 65536;
constexpr size_t kJitStackStart = 32UL * 1024;
constexpr size_t kJitStackLimit = 8UL * 1024 * 1024;

struct Free {
    void operator()(pcre2_code* code) const { pcre2_code_free(code); }
    void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
    void operator()(pcre2_compile_context* context) const { pcre2_compile_context_free(context); }
    void operator()(pcre2_match_context* context) const { pcre2_match_context_free(context); }
    void operator()(pcre2_jit_stack* stack) const { pcre2_jit_stack_free(stack); }
};

/// Shared by all expressions: the process is single-threaded.
struct Contexts {
    Contexts() {
        if (compile == nullptr || match == nullptr) throw std::bad_alloc();
        pcre2_set_max_pattern_length(compile.get(), kLongestExpression);
        pcre2_set_newline(compile.get(), PCRE2_NEWLINE_LF);
        pcre2_set_heap_limit(match.get(), kHeapLimitKiB);
        pcre2_jit_stack_assign(match.get(), nullptr, jit_stack.get());
    }

    std::unique_ptr<pcre2_compile_context, Free> compile{pcre2_compile_context_create(nullptr)};
    std::unique_ptr<pcre2_match_context, Free> match{pcre2_match_context_create(nullptr)};
    std::unique_ptr<pcre2_jit_stack, Free> jit_stack{
        pcre2_jit_stack_create(kJitStackStart, kJitStackLimit, nullptr)};
};

Contexts& Shared() {
    static Contexts contexts;
    return contexts;
}

PCRE2_SPTR Bytes(std::string_view text) {
    // An empty view may have a null pointer, which PCRE2 refuses.
    return reinterpret_cast<PCRE2_SPTR>(text.empty() ? "" : text.data());
}

struct Counter {
    Pattern::Work* work;
    size_t position;
};

/// PCRE2 calls this before each item of the expression. A run of one character class is a single item, so
/// this charges the distance that the match has moved.
int Charge(pcre2_callout_block* block, void* data) {
    auto* counter = static_cast<Counter*>(data);
    const size_t now = block->current_position;
    const size_t moved = now > counter->position ? now - counter->position : counter->position - now;
    counter->position = now;
    if (moved >= counter->work->left) return PCRE2_ERROR_CALLOUT;
    counter->work->left -= moved + 1;
    return 0;
}

Pattern::Match Groups(pcre2_match_data* data, size_t count) {
    const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(data);
    Pattern::Match match(pcre2_get_ovector_count(data));
    for (size_t i = 0; i < count && i < match.size(); i++) {
        if (offsets[2 * i] != PCRE2_UNSET) match[i] = {offsets[2 * i], offsets[2 * i + 1], true};
    }
    return match;
}

}  // namespace

struct Pattern::Program {
    explicit Program(std::string_view expression);
    int Run(std::string_view subject, size_t from, Work* work) const;

    std::unique_ptr<pcre2_code, Free> code;
    std::unique_ptr<pcre2_match_data, Free> data;  // null if the expression does not compile
};

Pattern::Program::Program(std::string_view expression) {
    // No "(*UTF)": the subject need not be valid UTF-8.
    constexpr uint32_t kOptions = PCRE2_NEVER_UTF | PCRE2_NEVER_UCP | PCRE2_AUTO_CALLOUT;
    int error = 0;
    PCRE2_SIZE where = 0;
    code.reset(pcre2_compile(Bytes(expression), expression.size(), kOptions, &error, &where,
                             Shared().compile.get()));
    if (code == nullptr) return;
    pcre2_jit_compile(code.get(), PCRE2_JIT_COMPLETE);  // if the host forbids it, matching is only slower
    data.reset(pcre2_match_data_create_from_pattern(code.get(), nullptr));
}

int Pattern::Program::Run(std::string_view subject, size_t from, Work* work) const {
    Counter counter{work, from};
    pcre2_match_context* context = Shared().match.get();
    pcre2_set_callout(context, Charge, &counter);
    pcre2_set_match_limit(context, subject.size() <= kShortText ? kShortTextMatchLimit : UINT32_MAX);
    const auto run = [&](uint32_t options) {
        return pcre2_match(code.get(), Bytes(subject), subject.size(), from, options, data.get(), context);
    };
    const int count = run(0);
    return count == PCRE2_ERROR_JIT_STACKLIMIT ? run(PCRE2_NO_JIT) : count;
}

Pattern::Work::Work(std::string_view subject) : left(kLeastWork + kWorkPerCharacter * subject.size()) {}

std::shared_ptr<const Pattern::Program> Pattern::Compiled(std::string_view expression) {
    static std::map<std::string, std::shared_ptr<const Program>, std::less<>> cache;
    const auto known = cache.find(expression);
    if (known != cache.end()) return known->second;
    if (cache.size() == kCacheSize) cache.clear();
    return cache.emplace(expression, std::make_shared<const Program>(expression)).first->second;
}

Pattern::Pattern(std::string_view expression) : program_(Compiled(expression)) {}

bool Pattern::IsValid() const {
    return program_->data != nullptr;
}

std::optional<Pattern::Match> Pattern::Find(std::string_view subject, size_t from) const {
    Work work(subject);
    return Find(subject, from, &work);
}

std::optional<Pattern::Match> Pattern::Find(std::string_view subject, size_t from, Work* work) const {
    if (!IsValid() || from > subject.size()) return std::nullopt;
    const int count = program_->Run(subject, from, work);
    if (count <= 0) return std::nullopt;
    return Groups(program_->data.get(), static_cast<size_t>(count));
}
