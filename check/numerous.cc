#include "check/numerous.h"

namespace {

constexpr size_t kMostNamed = 20;

}  // namespace

void Numerous::Problem(const SString& text, const SStringList& to_do, const SStringList& answers) {
    if (++count_ <= kMostNamed) findings_->Problem(about_, text, to_do, answers);
}

void Numerous::End(const SString& none) const {
    if (count_ == 0) findings_->Ok(about_, none);
    if (count_ > kMostNamed) findings_->Problem(about_, SString(count_ - kMostNamed) + " more of them");
}
