#include "support/text/pattern_program.h"

namespace {

constexpr size_t kLongestExpression = 65536;
// A short text has so few starting points that this limit, which holds for each of them, bounds the whole.
constexpr uint32_t kMatchLimit = 1000000;
constexpr uint32_t kHeapLimitKiB = 65536;
constexpr size_t kJitStackStart = 32UL * 1024;
constexpr size_t kJitStackLimit = 8UL * 1024 * 1024;

struct FreeCompileContext {
    void operator()(pcre2_compile_context* context) const { pcre2_compile_context_free(context); }
};
struct FreeMatchContext {
    void operator()(pcre2_match_context* context) const { pcre2_match_context_free(context); }
};
struct FreeJitStack {
    void operator()(pcre2_jit_stack* stack) const { pcre2_jit_stack_free(stack); }
};

/// What all programs of the process share: it is single-threaded.
struct Contexts {
    Contexts() {
        if (compile != nullptr) {
            pcre2_set_max_pattern_length(compile.get(), kLongestExpression);
            pcre2_set_newline(compile.get(), PCRE2_NEWLINE_LF);
        }
        if (match != nullptr) {
            pcre2_set_heap_limit(match.get(), kHeapLimitKiB);
            pcre2_jit_stack_assign(match.get(), nullptr, jit_stack.get());
        }
    }

    std::unique_ptr<pcre2_compile_context, FreeCompileContext> compile{pcre2_compile_context_create(nullptr)};
    std::unique_ptr<pcre2_match_context, FreeMatchContext> match{pcre2_match_context_create(nullptr)};
    std::unique_ptr<pcre2_jit_stack, FreeJitStack> jit_stack{
        pcre2_jit_stack_create(kJitStackStart, kJitStackLimit, nullptr)};
};

Contexts& Shared() {
    static Contexts contexts;
    return contexts;
}

PCRE2_SPTR Bytes(const SString& text) {
    return reinterpret_cast<PCRE2_SPTR>(text.CString());
}

struct Counter {
    Pattern::Work* work;
    size_t position;
};

/// The library calls this before each item of the expression. Its own limits are no bound for a long text:
/// they start anew at each starting point, and a run of one character class counts as one step. So each call
/// is charged with the distance that the match has moved.
int Charge(pcre2_callout_block* block, void* data) {
    auto* counter = static_cast<Counter*>(data);
    const size_t now = block->current_position;
    const size_t moved = now > counter->position ? now - counter->position : counter->position - now;
    counter->position = now;
    if (moved >= counter->work->left) return PCRE2_ERROR_CALLOUT;
    counter->work->left -= moved + 1;
    return 0;
}

uint32_t Options(PatternProgram::Kind kind) {
    // An expression must not turn its subject into UTF-8 ("(*UTF)"): the bytes are not checked for that.
    const uint32_t options = PCRE2_NEVER_UTF | PCRE2_NEVER_UCP;
    return kind == PatternProgram::Kind::kCounted ? options | PCRE2_AUTO_CALLOUT : options;
}

}  // namespace

PatternProgram::PatternProgram(const SString& expression, Kind kind) : kind_(kind) {
    int error = 0;
    PCRE2_SIZE where = 0;
    code_.reset(pcre2_compile(Bytes(expression), expression.Length(), Options(kind), &error, &where,
                              Shared().compile.get()));
    if (code_ == nullptr) return;
    pcre2_jit_compile(code_.get(), PCRE2_JIT_COMPLETE);  // where the host forbids it, matching is only slower
    data_.reset(pcre2_match_data_create_from_pattern(code_.get(), nullptr));
}

std::optional<Pattern::Match> PatternProgram::Run(const SString& subject, size_t from,
                                                  Pattern::Work* work) const {
    if (data_ == nullptr || Shared().match == nullptr || from > subject.Length()) return std::nullopt;
    const int count = Execute(subject, from, work);
    if (count <= 0) return std::nullopt;
    return Groups(static_cast<size_t>(count));
}

int PatternProgram::Execute(const SString& subject, size_t from, Pattern::Work* work) const {
    Counter counter{work, from};
    const bool counted = kind_ == Kind::kCounted;
    pcre2_match_context* context = Shared().match.get();
    pcre2_set_callout(context, counted ? Charge : nullptr, counted ? &counter : nullptr);
    pcre2_set_match_limit(context, counted ? UINT32_MAX : kMatchLimit);
    const auto run = [&](uint32_t options) {
        return pcre2_match(code_.get(), Bytes(subject), subject.Length(), from, options, data_.get(),
                           context);
    };
    const int count = run(0);
    return count == PCRE2_ERROR_JIT_STACKLIMIT ? run(PCRE2_NO_JIT) : count;
}

Pattern::Match PatternProgram::Groups(size_t count) const {
    const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(data_.get());
    Pattern::Match match(pcre2_get_ovector_count(data_.get()));
    for (size_t i = 0; i < count && i < match.size(); i++) {
        if (offsets[2 * i] != PCRE2_UNSET) match[i] = {offsets[2 * i], offsets[2 * i + 1], true};
    }
    return match;
}
