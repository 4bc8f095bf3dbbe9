// Pattern expressions from outside (an administrator's process name is pasted into one): any expression on
// any text ends soon, and what it gives fits the text. The input's first line is the expression.

#include <cstdint>
#include <cstdlib>

#include "support/text/pattern.h"
#include "support/text/sstring_list.h"

namespace {

void Require(bool holds) {
    if (!holds) abort();
}

void CheckMatch(const SString& expression, const SString& subject) {
    const auto match = Pattern(expression.Bytes()).Find(subject.Bytes());
    if (!match) return;
    for (const auto& group : *match) Require(group.begin <= group.end && group.end <= subject.Length());
    Require(subject.M(expression).Count() + 1 == match->size() || expression.StartsWith("/"));
}

void CheckLists(const SString& expression, const SString& subject) {
    const SStringList lines = subject.Split('\n');
    SStringList list = lines;
    const size_t selected = list.Grep("/" + expression + "/").Count();
    const size_t rejected = list.Grep("!/" + expression + "/").Count();
    Require(selected + rejected == lines.Count() || selected + rejected == 0);
    list.Grep(expression);
    Require(list.Count() == lines.Count());
    list.Grep("s/" + expression + "/<$1>/");
    Require(list.Count() == lines.Count());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const SString input(std::string_view(reinterpret_cast<const char*>(data), size));
    const size_t line_end = std::min(input.Bytes().find('\n'), size);
    const SString expression = std::string_view(input.Bytes()).substr(0, line_end);
    const SString subject = std::string_view(input.Bytes()).substr(std::min(line_end + 1, size));
    CheckMatch(expression, subject);
    CheckLists(expression, subject);
    Require(subject.Split(expression, 3).Count() <= 3);
    Require(subject.Split(expression).Count() <= subject.Length() + 1);
    subject.S(expression, "$1$2", "g");
    return 0;
}
