// What users with ".forward" files are told: the body of the mail (its lines end in CR LF), and the file
// left beside theirs.
#pragma once

#include <cstdint>
#include <optional>

#include "support/text/sstring.h"

extern const char pz_ForwardMessage1[];  // up to the host's name
extern const char pz_ForwardMessage2[];  // from there on

/// The notice file, for many homes.
class ForwardNotice {
  public:
    explicit ForwardNotice(const SString& host);
    /// Dated now.
    SString Text() const;
    /// When the text was written, in seconds since 1970; nothing if it is no such notice, to the byte.
    std::optional<int64_t> DateOf(const SString& text) const;

  private:
    SString AfterDate() const;
    SString body_;
};
