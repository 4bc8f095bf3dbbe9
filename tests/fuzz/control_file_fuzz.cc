// Control files: whatever is read can be written, and reads the same again.
#include <cstdint>
#include <cstdlib>

#include "support/mail/field_text.h"

namespace {

bool IsSame(const SNamedStringList& left, const SNamedStringList& right) {
    if (left.Keys() != right.Keys()) return false;
    for (const SString& name : left.Keys()) {
        if (left.Get(name) != right.Get(name)) return false;
    }
    return true;
}

void Check(const SNamedStringList& fields, const SString& line_end) {
    const auto text = FieldText(fields, line_end);
    if (!text) abort();
    const auto again = ParseFieldText(*text);
    if (!again || !IsSame(fields, *again)) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto fields = ParseFieldText(SString(std::string(reinterpret_cast<const char*>(data), size)));
    if (!fields) return 0;
    Check(*fields, "\n");
    Check(*fields, "\r\n");
    return 0;
}
