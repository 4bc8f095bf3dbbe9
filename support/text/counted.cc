#include "support/text/counted.h"

namespace {

constexpr size_t kMostNamed = 20;

}  // namespace

SString Counted(size_t count, const SString& thing) {
    return SString(count) + " " + thing + (count == 1 ? "" : "s");
}

SString FirstOf(SStringList names) {
    const size_t count = names.Count();
    if (count > kMostNamed) {
        names.Splice(static_cast<int>(kMostNamed), static_cast<int>(count - kMostNamed));
        names.Push("and " + SString(count - kMostNamed) + " more");
    }
    return names.Join(", ");
}
