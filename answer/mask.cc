#include "answer/mask.h"

#include <algorithm>
#include <utility>

namespace {

/// How many bytes at the end are a beginning of the secret, but not all of it.
size_t BeginningAtEnd(std::string_view text, std::string_view secret) {
    size_t length = secret.empty() ? 0 : std::min(text.size(), secret.size() - 1);
    while (length > 0 && !text.ends_with(secret.substr(0, length))) --length;
    return length;
}

}  // namespace

SString Mask::Pass(const SString& bytes) {
    std::string_view text = kept_ += bytes.Bytes();
    std::string shown;
    for (size_t at = 0; !secret_.empty() && (at = text.find(secret_)) != std::string_view::npos;) {
        shown.append(text.substr(0, at)).append(kMasked);
        text.remove_prefix(at + secret_.size());
    }
    const size_t kept = BeginningAtEnd(text, secret_);
    shown.append(text.substr(0, text.size() - kept));
    kept_ = std::string(text.substr(text.size() - kept));
    return SString(std::move(shown));
}

SString Mask::Rest() {
    return SString(std::exchange(kept_, {}));
}
