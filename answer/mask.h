// Keeps a secret out of what is shown, wherever a read of it ends.
#pragma once

#include "support/text/sstring.h"

class Mask {
  public:
    /// From here on. The secret must not be empty.
    void Hide(const SString& secret) { secret_ = secret.Bytes(); }
    /// What can be shown by now: "********" for each secret; an end that may be the beginning of one is kept
    /// back.
    SString Pass(const SString& bytes);
    /// What was kept back, as nothing follows for now.
    SString Rest();

  private:
    std::string secret_;
    std::string kept_;
};

inline constexpr char kMasked[] = "********";
