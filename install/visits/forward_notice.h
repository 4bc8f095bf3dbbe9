// What users with ".forward" files are told: the body of the mail (its lines end in CR LF), and the file
// left beside theirs.
#pragma once

#include "support/text/sstring.h"

extern const char pz_ForwardMessage1[];  // up to the host's name
extern const char pz_ForwardMessage2[];  // from there on

/// The notice file, for many homes.
class ForwardNotice {
  public:
    explicit ForwardNotice(const SString& host);
    /// Dated now.
    SString Text() const;

  private:
    SString body_;
};
