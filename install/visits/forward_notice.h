// What users with ".forward" files are told: the body of the mail (its lines end in CR LF), and the file
// left beside theirs.
#pragma once

#include "support/text/sstring.h"

extern const char pz_ForwardMessage1[];  // up to the host's name
extern const char pz_ForwardMessage2[];  // from there on

/// The notice file's text, dated now.
SString ForwardNoticeFile(const SString& host);
